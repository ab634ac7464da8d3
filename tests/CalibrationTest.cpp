#include "calibration/ConfigXmlParser.h"

#include <platform/DeviceFiles.h>

#include <sys/stat.h>

#include <array>
#include <memory>

#include "tests/ServiceTest.h"

namespace vendor::kov::hardware::display_control::V1_0::implementation {

namespace {

using namespace std::string_literals;
using ::testing::ElementsAre;

const std::string kPanelA = "dornel R7TK 35 02 0a hd+ video dsi panel\n";
const std::string kFileA = "/vendor/etc/disp_calib_data_0a.xml";
const std::string kFileB = "/vendor/etc/disp_calib_data_0b.xml";
const std::string kFileDefault = fakes::kDefaultCalibration;
const std::string kOnes = "<v>1</v><v>1</v><v>1</v><v>1</v><v>1</v><v>1</v><v>1</v><v>1</v>";  // eight of nine

// The values up to the last that is not 0.
template <typename T, size_t N>
std::string valuesOf(const T (&values)[N]) {
    size_t count = N;
    while (count > 0 && values[count - 1] == 0) --count;
    std::vector<float> floats;
    std::transform(values, values + count, std::back_inserter(floats), [](T v) { return static_cast<float>(v); });
    return fakes::text(floats.data(), count);
}

// Every block that holds something: its name, "!" when it is complete, and its values.
std::string summary(const ConfigXmlParser& r) {
    std::string result;
    const auto add = [&result](const char* name, bool complete, const std::string& values) {
        if (complete || values != "[]") result += name + (complete ? "!"s : ""s) + values + " ";
    };
    const double ends[] = {static_cast<double>(r.unlimitedWarm), static_cast<double>(r.unlimitedCold)};
    const double range[] = {r.eyeCareMaxCCT, r.eyeCareMinCCT};
    add("WPC", r.hasCtmWpc, valuesOf(r.ctmWpc));
    add("CCM", r.hasCtmCcm, valuesOf(r.ctmCcm));
    add("Calib", r.hasGammaCalib, valuesOf(r.gammaCalib));
    add("Tuning", r.hasGammaTuning, valuesOf(r.gammaTuning));
    add("CT", r.hasUnlimitedCT, valuesOf(ends));
    add("Range", r.hasEyeCare, valuesOf(range));
    add("Coeffs", r.hasEyeCare, valuesOf(r.eyeCareCoeffs));
    add("Param", r.hasWpcParam, valuesOf(r.wpcParam));
    return result.empty() ? result : result.substr(0, result.size() - 1);
}

std::vector<double> countTo(size_t last) {
    std::vector<double> values;
    for (size_t i = 1; i <= last; ++i) values.push_back(static_cast<double>(i));
    return values;
}

}  // namespace

class CalibrationTest : public PhoneTest {
protected:
    static std::string parse() {
        const auto record = std::make_unique<ConfigXmlParser>();
        record->parser();
        return summary(*record);
    }

    std::string parseText(const std::string& xml) const {
        phone.write(kFileDefault, xml);
        return parse();
    }
};

TEST_F(CalibrationTest, ThePanelsNameChoosesTheFile) {
    const std::string lower = "dornel r7tk 35 02 0a hd+ video dsi panel\n";
    const std::string trimmed = kPanelA.substr(0, kPanelA.size() - 1);
    const struct {
        const char* name;
        std::string node;
        std::string file;
    } kPanels[] = {
        {"panel a", kPanelA, kFileA},
        {"panel b", "dornel R7TK 43 03 0b hd+ video dsi panel\n", kFileB},
        {"no line feed", trimmed, kFileDefault},
        {"carriage return", trimmed + "\r\n", kFileDefault},
        {"two line feeds", kPanelA + "\n", kFileDefault},
        {"letter case", lower, kFileDefault},
        {"unknown panel", "another panel\n", kFileDefault},
        {"zero byte ends it", kPanelA + "\0junk"s, kFileA},
        {"zero byte at once", "\0"s + kPanelA, kFileDefault},
        {"longer than a read", kPanelA + std::string(200, 'x'), kFileDefault},
    };
    for (const auto& panel : kPanels) {
        phone.write(fakes::kPanelNameNode, panel.node);
        parse();
        EXPECT_THAT(logLines(), ElementsAre("log D parser: panel xml " + panel.file, "log E parser: access error!"))
            << panel.name;
    }
    const std::string kChoice = "log D parser: panel xml " + kFileDefault;
    phone.write(fakes::kPanelNameNode, "");
    parse();
    phone.remove(fakes::kPanelNameNode);
    parse();
    EXPECT_THAT(logLines(),
                ElementsAre("log E parser: read panel name error", kChoice, "log E parser: access error!",
                            "log E parser: open panel name node error", kChoice, "log E parser: access error!"));
}

TEST_F(CalibrationTest, APanelsMissingFileIsNotReplacedByTheDefault) {
    calibrate(block("CTM_WPC", countTo(9)));
    phone.write(fakes::kPanelNameNode, kPanelA);
    EXPECT_EQ(parse(), "");
    phone.write(kFileA, "<p>" + block("CTM_CCM", countTo(9)) + "</p>");
    EXPECT_EQ(parse(), "CCM![1 2 3 4 5 6 7 8 9]");
    phone.write(fakes::kPanelNameNode, "another panel\n");
    EXPECT_EQ(parse(), "WPC![1 2 3 4 5 6 7 8 9]") << "the node is read anew each time";
}

TEST_F(CalibrationTest, ReadsEveryBlock) {
    std::vector<double> values = countTo(4096);
    values[0] = 5000;
    std::vector<float> tuning(values.begin(), values.end());
    std::vector<float> table = tuning;
    table[0] = 1;
    calibrate(block("WPCParam", countTo(9)) + "<EyeCare><MinCCT>2700.5</MinCCT>" + elements(countTo(36)) +
              "<MaxCCT>6500.5</MaxCCT></EyeCare><UnlimitedCT><Cold>0xEDFDFF</Cold><Warm>FFFFEA</Warm></UnlimitedCT>" +
              block("Gamma_Tuning", values) + block("Gamma_Calib", countTo(4096)) + block("CTM_CCM", countTo(9)) +
              block("CTM_WPC", {0.1, -0.1, 0, 0, 1, 0, 0, 0, 1.5}));
    EXPECT_EQ(parse(), "WPC![0.100000001 -0.100000001 0 0 1 0 0 0 1.5] CCM![1 2 3 4 5 6 7 8 9] Calib!" +
                           fakes::text(table.data(), 4096) + " Tuning!" + fakes::text(tuning.data(), 4096) +
                           " CT![16777194 15597055] Range![6500.5 2700.5] Coeffs!" + fakes::text(table.data(), 36) +
                           " Param![1 2 3 4 5 6 7 8 9]");
}

TEST_F(CalibrationTest, CountsOnlyElementsAndTakesThemByPosition) {
    const auto eyeCare = [](size_t values, const std::string& rest) {
        return "<EyeCare>" + elements(std::vector<double>(values, 1)) + rest + "</EyeCare>";
    };
    std::string manyOnes = "Coeffs![1";
    for (int i = 1; i < 36; ++i) manyOnes += " 1";
    const struct {
        const char* name;
        std::string blocks;
        std::string expected;
    } kCases[] = {
        {"nothing", "", ""},
        {"unknown block", block("ctm_wpc", countTo(9)) + block("Other", countTo(9)), ""},
        {"blocks inside a block", "<group>" + block("CTM_WPC", countTo(9)) + "</group>", ""},
        {"empty block", "<CTM_WPC/>", ""},
        {"eight values", block("CTM_WPC", countTo(8)), "WPC[1 2 3 4 5 6 7 8]"},
        {"ten values", block("CTM_WPC", countTo(10)), "WPC![1 2 3 4 5 6 7 8 9]"},
        {"one of 4096 missing", block("Gamma_Calib", {2}), "Calib[2]"},
        {"any names, comments, text and instructions between",
         "<CTM_CCM>0.5<a>1</a><!-- <v>9</v> --><b>2</b>text<?v 9?><![CDATA[9]]>" + elements(countTo(7)) + "</CTM_CCM>",
         "CCM![1 2 1 2 3 4 5 6 7]"},
        {"text and character data around", "1<![CDATA[2]]>" + block("CTM_CCM", countTo(9)) + "<![CDATA[3]]>",
         "CCM![1 2 3 4 5 6 7 8 9]"},
        {"twice", block("CTM_CCM", countTo(9)) + block("CTM_CCM", {7, 7}), "CCM![7 7 3 4 5 6 7 8 9]"},
        {"short ones never add up", block("WPCParam", countTo(5)) + block("WPCParam", countTo(4)), "Param[1 2 3 4 5]"},
        {"warm alone", "<UnlimitedCT><Warm>1</Warm></UnlimitedCT>", "CT[1]"},
        {"warm and another", "<UnlimitedCT><Warm>1</Warm><x>2</x></UnlimitedCT>", "CT![1]"},
        {"cold comes third", "<UnlimitedCT><Warm>1</Warm><Warm>2</Warm><Cold>3</Cold></UnlimitedCT>", "CT![2]"},
        {"neither", "<UnlimitedCT><x/><x/></UnlimitedCT>", "CT![]"},
        {"eye care of 37", eyeCare(35, "<MaxCCT>2</MaxCCT><MinCCT>3</MinCCT>"),
         "Range[2 3] Coeffs[" + manyOnes.substr(8, 69) + "]"},
        {"range after 38 others", eyeCare(38, "<MaxCCT>2</MaxCCT>"), "Range![] " + manyOnes + "]"},
        {"range last", eyeCare(36, "<MinCCT>3</MinCCT><MaxCCT>2</MaxCCT>"), "Range![2 3] " + manyOnes + "]"},
        {"instruction named as a block", "<?CTM_WPC <v>1</v>?>", ""},
    };
    for (const auto& c : kCases) {
        calibrate(c.blocks);
        EXPECT_EQ(parse(), c.expected) << c.name;
    }
    EXPECT_EQ(parseText("<CTM_WPC>" + block("CTM_WPC", countTo(9)) + "</CTM_WPC>"), "WPC![1 2 3 4 5 6 7 8 9]")
        << "the root has any name";
    EXPECT_EQ(parseText("<root/>"), "");
}

TEST_F(CalibrationTest, NumbersAreConvertedAsInC) {
    const std::pair<Lines, const char*> kDecimals[] = {
        {{"  2.5e-1junk", "-0.5", "+3", ".5", "0x10", "1,5", "0.1", "&#50;", "<![CDATA[3]]>"},
         "WPC![0.25 -0.5 3 0.5 16 1 0.100000001 2 3]"},
        {{"inf", "-INF", "nan", "1e999", "1e39", "1e-999", "<b>1</b>2", "1<!-- 5 -->2", "-0"},
         "WPC![inf -inf nan inf inf 0 12 12]"},
        {{"-", "", " \n ", "one", "e5", "--1", "&lt;1", "0.0.1", "1"}, "WPC![0 0 0 0 0 0 0 0 1]"},
    };
    for (const auto& [texts, expected] : kDecimals) {
        std::string values;
        for (const std::string& text : texts) values += "<v>" + text + "</v>";
        calibrate("<CTM_WPC>" + values + "</CTM_WPC>");
        EXPECT_EQ(parse(), expected);
    }
    const std::array<const char*, 3> kHexadecimals[] = {{"FFFFEA", "0XFFFFEA", "CT![16777194 16777194]"},
                                                        {"0xffffea", " \t 10", "CT![16777194 16]"},
                                                        {"-1", "+A", "CT![-1 10]"},
                                                        {"FFFFFFFF", "100000002", "CT![-1 2]"},
                                                        {"8000000000000001", "12G4", "CT![-1 18]"},
                                                        {"0x", "#FFFFEA", "CT![]"}};
    for (const auto& [warm, cold, expected] : kHexadecimals) {
        calibrate("<UnlimitedCT><Warm>"s + warm + "</Warm><Cold>" + cold + "</Cold></UnlimitedCT>");
        EXPECT_EQ(parse(), expected) << warm;
    }
}

// A calibration of that many bytes: mostly comments of a mebibyte.
std::string padded(size_t size) {
    std::string xml = "<p>" + block("CTM_WPC", countTo(9));
    const std::string comment = "<!--" + std::string((1 << 20) - 7, ' ') + "-->";
    while (xml.size() + comment.size() + 4 <= size) xml += comment;
    return xml + std::string(size - xml.size() - 4, ' ') + "</p>";
}

TEST_F(CalibrationTest, UnusualFilesThatLibxml2ReadsAreRead) {
    const std::string matrix = block("CTM_WPC", countTo(9));
    const auto text = [](size_t size) { return std::string(size, 'x'); };
    std::string table;
    for (int i = 0; i < 200000; ++i) table += "<row>0.5</row>\n";
    const std::pair<const char*, std::string> kFiles[] = {
        {"a long licence", "<!--" + text(24 << 10) + "--><p>" + matrix + "</p>"},
        {"a long attribute", "<p note='" + text(100 << 10) + "'>" + matrix + "</p>"},
        {"a long text in an unknown block", "<p><Notes>" + text(1 << 20) + "</Notes>" + matrix + "</p>"},
        {"padding", "<p>" + std::string(64 << 10, ' ') + matrix + "</p>"},
        {"a declared attribute", "<!DOCTYPE p [<!ATTLIST v unit CDATA 'nit'>]><p>" + matrix + "</p>"},
        {"a foreign table", "<p><Foreign>" + table + "</Foreign>" + matrix + "</p>"},
        {"another encoding", "<?xml version='1.0' encoding='IBM850'?><!-- \x81 --><p>" + matrix + "</p>"},
        {"a CDATA section between the blocks", "<p><![CDATA[CTM_CCM]]>" + matrix + "</p>"},
        {"16 MiB", padded(16 << 20)},
    };
    for (const auto& [name, content] : kFiles) EXPECT_EQ(parseText(content), "WPC![1 2 3 4 5 6 7 8 9]") << name;
}

TEST_F(CalibrationTest, AMalformedFileLeavesTheRecordEmpty) {
    const std::string full = "<p>" + block("CTM_WPC", countTo(9)) + "</p>";
    std::string deep = full.substr(0, full.size() - 4);
    for (int i = 0; i < 10000; ++i) deep += "<d>";
    for (int i = 0; i < 10000; ++i) deep += "</d>";
    std::string laughs = "<!DOCTYPE p [<!ENTITY e0 '1111111111'>";
    for (int i = 1; i < 10; ++i) {
        const std::string inner = "&e" + std::to_string(i - 1) + ";";
        laughs += "<!ENTITY e" + std::to_string(i) + " '";
        for (int n = 0; n < 10; ++n) laughs += inner;
        laughs += "'>";
    }
    const struct {
        const char* name;
        std::string content;
    } kFiles[] = {
        {"empty", ""},
        {"not XML", "gamma = 2.2\n"},
        {"zero bytes", std::string(100, '\0')},
        {"ends inside a value", full.substr(0, full.find("<v>5") + 4)},
        {"ends before the root does", full.substr(0, full.size() - 4)},
        {"crossed elements", "<p><CTM_WPC></p></CTM_WPC>"},
        {"two roots", full + full},
        {"no root", "<?xml version='1.0'?><!-- -->"},
        {"not its encoding", "<?xml version='1.0' encoding='UTF-8'?><p>\xFF\xFE</p>"},
        {"nested too deep", deep + "</p>"},
        {"an entity inside itself", "<!DOCTYPE p [<!ENTITY e '&e;'>]><p><CTM_WPC><v>&e;</v></CTM_WPC></p>"},
        {"larger than 16 MiB", padded((16 << 20) + 1)},
        {"declares an entity", "<!DOCTYPE p [<!ENTITY e '1'>]>" + full},
        {"declares a parameter entity", "<!DOCTYPE p [<!ATTLIST p a CDATA ''><!ENTITY % e ''>]>" + full},
        {"entities without end", laughs + "]><p><CTM_WPC><v>&e9;</v></CTM_WPC></p>"},
    };
    for (const auto& file : kFiles) {
        EXPECT_EQ(parseText(file.content), "") << file.name;
        EXPECT_THAT(logLines(), testing::Contains("log E parser: xmlParseFile error!")) << file.name;
    }
    phone.remove(kFileDefault);
    phone.makeFolder(kFileDefault);
    EXPECT_EQ(parse(), "");
    EXPECT_THAT(logLines(), testing::Contains("log E parser: xmlParseFile error!")) << "a folder";
    phone.remove(kFileDefault);
    ASSERT_EQ(mkfifo(platform::devicePath(kFileDefault).c_str(), 0600), 0);
    EXPECT_EQ(parse(), "") << "a pipe that nobody writes to";

    phone.remove(kFileDefault);
    EXPECT_NE(parseText(full), "") << "the reader has recovered";
}

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
