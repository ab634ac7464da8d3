// SPDX-License-Identifier: Apache-2.0
// The calibration reader: how elements are counted, how numbers are converted, and which files are read.
#include "calibration/ConfigXmlParser.h"

#include <libxml/xmlerror.h>
#include <sys/stat.h>

#include "calibration/PanelTable.h"
#include "tests/PhoneTest.h"

namespace vendor::kov::hardware::display_control::V1_0::implementation {

namespace {

using namespace std::string_literals;

const std::string kFile = "/vendor/etc/disp_calib_data_default.xml";

// count copies of an element.
std::string times(size_t count, const std::string& xml = "<v>1</v>") {
    std::string all;
    for (size_t i = 0; i < count; ++i) all += xml;
    return all;
}
std::string element(const std::string& name, const std::string& content) {
    return "<" + name + ">" + content + "</" + name + ">";
}
const std::string kNine = "<a>1</a><b>2</b><c>3</c><d>4</d><e>5</e><f>6</f><g>7</g><h>8</h><i>9</i>";
const std::string kMatrix = element("CTM_WPC", kNine);

// The values up to the last that is not 0; of more than nine their number, two and the last.
template <typename T, size_t N>
std::string valuesOf(const T (&values)[N]) {
    std::vector<float> list(values, values + N);
    while (!list.empty() && list.back() == 0) list.pop_back();
    if (list.size() <= 9) return simulator::valueText(list);
    return std::to_string(list.size()) + simulator::valueText(std::vector<float>{list[0], list[1], list.back()});
}

// Every block that holds something: its name, "!" if it is complete, and its values.
std::string summary(const ConfigXmlParser& r) {
    const double ends[] = {static_cast<double>(r.unlimitedWarm), static_cast<double>(r.unlimitedCold)};
    const double range[] = {r.eyeCareMaxCCT, r.eyeCareMinCCT};
    std::string result;
    for (const auto& [name, isComplete, values] : {std::tuple("WPC", r.hasCtmWpc, valuesOf(r.ctmWpc)),
                                                   {"CCM", r.hasCtmCcm, valuesOf(r.ctmCcm)},
                                                   {"Calib", r.hasGammaCalib, valuesOf(r.gammaCalib)},
                                                   {"Tuning", r.hasGammaTuning, valuesOf(r.gammaTuning)},
                                                   {"CT", r.hasUnlimitedCT, valuesOf(ends)},
                                                   {"Range", r.hasEyeCare, valuesOf(range)},
                                                   {"Coeffs", r.hasEyeCare, valuesOf(r.eyeCareCoeffs)},
                                                   {"Param", r.hasWpcParam, valuesOf(r.wpcParam)}}) {
        if (isComplete || values != "[]")
            result += (result.empty() ? ""s : " "s) + name + (isComplete ? "!" : "") + values;
    }
    return result;
}

}  // namespace

class CalibrationTest : public PhoneTest {
protected:
    CalibrationTest() { phone.files().remove(kFile); }

    // The record read from a document, or from the file as it is.
    static std::string read() {
        xmlSetStructuredErrorFunc(nullptr, [](void*, xmlErrorPtr) {});
        return summary(*readCalibration());
    }
    std::string read(const std::string& xml) {
        phone.files().write(kFile, xml);
        return read();
    }
};

TEST_F(CalibrationTest, CountsOnlyElementsAndTakesThemByPosition) {
    const std::string kRange = "<MaxCCT>2</MaxCCT><MinCCT>3</MinCCT>";
    const struct {
        const char* name;
        std::string blocks;
        std::string expected;
    } kCases[] = {
        {"unknown blocks", element("ctm_wpc", kNine) + element("Other", kNine) + "<?CTM_WPC <v>1</v>?>", ""},
        {"blocks inside a block", element("group", kMatrix), ""},
        {"empty block", "<CTM_WPC/>", ""},
        {"eight values", element("CTM_WPC", times(8)), "WPC[1 1 1 1 1 1 1 1]"},
        {"ten values", element("CTM_WPC", kNine + "<v>10</v>"), "WPC![1 2 3 4 5 6 7 8 9]"},
        {"one of 4096 missing", element("Gamma_Calib", times(4095)), "Calib4095[1 1 1]"},
        {"one of 4096 too many", element("Gamma_Calib", times(4096) + "<v>2</v>"), "Calib!4096[1 1 1]"},
        {"the tuned table", element("Gamma_Tuning", times(4095) + "<v>2</v>"), "Tuning!4096[1 1 2]"},
        {"comments, text and instructions between",
         "<CTM_CCM>0.5<v>3</v><!-- <v>9</v> -->text<?v 9?><![CDATA[9]]>" + times(8) + "</CTM_CCM>",
         "CCM![3 1 1 1 1 1 1 1 1]"},
        {"text and character data around", "1<![CDATA[2]]>" + element("CTM_CCM", kNine) + "<![CDATA[3]]>",
         "CCM![1 2 3 4 5 6 7 8 9]"},
        {"short ones never add up", element("WPCParam", times(5)) + element("WPCParam", times(4, "<v>2</v>")),
         "Param[2 2 2 2 1]"},
        {"warm alone", "<UnlimitedCT><Warm>1</Warm></UnlimitedCT>", "CT[1]"},
        {"warm and another", "<UnlimitedCT><Warm>1</Warm><x>2</x></UnlimitedCT>", "CT![1]"},
        {"cold comes third", "<UnlimitedCT><Warm>1</Warm><Warm>2</Warm><Cold>3</Cold></UnlimitedCT>", "CT![2]"},
        {"neither", "<UnlimitedCT><x/><x/></UnlimitedCT>", "CT![]"},
        {"eye care of 37", element("EyeCare", times(35) + kRange), "Range[2 3] Coeffs35[1 1 1]"},
        {"range after 38 others", element("EyeCare", times(38) + kRange), "Range![] Coeffs!36[1 1 1]"},
        {"range last", element("EyeCare", times(36) + kRange), "Range![2 3] Coeffs!36[1 1 1]"},
    };
    for (const auto& c : kCases) EXPECT_EQ(read(element("panel", c.blocks)), c.expected) << c.name;
    EXPECT_EQ(read(element("CTM_WPC", kMatrix)), "WPC![1 2 3 4 5 6 7 8 9]") << "the root has any name";
    EXPECT_EQ(read("<root/>"), "");
}

TEST_F(CalibrationTest, ThePanelsNameIsTheFirst128Bytes) {
    phone.files().write(kPanelNameNode, std::string(200, 'x'));
    EXPECT_EQ(identifyPanel().name.text.size(), 128U);
}

TEST_F(CalibrationTest, ABlockThatWasCompleteOnceStaysComplete) {
    for (const CalibrationBlock& block : kCalibrationBlocks) {
        const auto record = std::make_unique<ConfigXmlParser>();
        phone.files().write(
            kFile, "<p>" + element(block.name, times(block.elements)) + element(block.name, "<v>7</v>") + "</p>");
        record->parser();
        EXPECT_TRUE((*record).*block.isComplete) << block.name;
    }
    EXPECT_EQ(read("<p>" + kMatrix + element("CTM_WPC", "<v>7</v>") + "</p>"), "WPC![7 2 3 4 5 6 7 8 9]");
}

TEST_F(CalibrationTest, NumbersAreConvertedAsInC) {
    const std::pair<Lines, const char*> kDecimals[] = {
        {{"  2.5e-1junk", "-0.5", "+3", ".5", "0x10", "1,5", "0.1", "&#50;", "<![CDATA[3]]>"},
         "WPC![0.25 -0.5 3 0.5 16 1 0.1 2 3]"},
        {{"inf", "-INF", "nan", "1e999", "1e39", "1e-999", "<b>1</b>2", "1<!-- 5 -->2", "-0"},
         "WPC![inf -inf nan inf inf 0 12 12]"},
        {{"-", "", " \n ", "one", "e5", "--1", "&lt;1", "0.0.1", "1"}, "WPC![0 0 0 0 0 0 0 0 1]"},
        // The nearest float of the nearest double, which is not the nearest float of the text.
        {{"1.00000017881393432617187499999", "", "", "", "", "", "", "", ""}, "WPC![1.0000002]"},
    };
    for (const auto& [texts, expected] : kDecimals) {
        std::string values;
        for (const std::string& text : texts) values += element("v", text);
        EXPECT_EQ(read(element("p", element("CTM_WPC", values))), expected);
    }
    const std::array<const char*, 3> kHexadecimals[] = {{"FFFFEA", "0XFFFFEA", "CT![16777194 16777194]"},
                                                        {"0xffffea", " \t 10", "CT![16777194 16]"},
                                                        {"-1", "+A", "CT![-1 10]"},
                                                        {"FFFFFFFF", "100000002", "CT![-1 2]"},
                                                        {"8000000000000001", "12G4", "CT![-1 18]"},
                                                        {"0x", "#FFFFEA", "CT![]"}};
    for (const auto& [warm, cold, expected] : kHexadecimals)
        EXPECT_EQ(read(element("p", element("UnlimitedCT", element("Warm", warm) + element("Cold", cold)))), expected);
    EXPECT_EQ(read(element("p", element("EyeCare", "<MaxCCT>0.1</MaxCCT>"))), "Range[0.1]");
    EXPECT_EQ(readCalibration()->eyeCareMaxCCT, 0.1) << "eye care stays double";
}

// A calibration of size bytes, mostly comments of a mebibyte.
std::string padded(size_t size) {
    std::string xml = "<p>" + kMatrix;
    const std::string comment = "<!--" + std::string((1 << 20) - 7, ' ') + "-->";
    while (xml.size() + comment.size() + 4 <= size) xml += comment;
    return xml + std::string(size - xml.size() - 4, ' ') + "</p>";
}

TEST_F(CalibrationTest, UnusualFilesAreRead) {
    const std::pair<const char*, std::string> kFiles[] = {
        {"a long licence", "<!--" + std::string(24 << 10, 'x') + "--><p>" + kMatrix + "</p>"},
        {"a long attribute", "<p note='" + std::string(100 << 10, 'x') + "'>" + kMatrix + "</p>"},
        {"a long text", "<p><Notes>" + std::string(1 << 20, 'x') + "</Notes>" + kMatrix + "</p>"},
        {"padding", "<p>" + std::string(64 << 10, ' ') + kMatrix + "</p>"},
        {"a declared attribute", "<!DOCTYPE p [<!ATTLIST v unit CDATA 'nit'>]><p>" + kMatrix + "</p>"},
        {"a foreign table", "<p><Foreign>" + times(200000) + "</Foreign>" + kMatrix + "</p>"},
        {"another encoding", "<?xml version='1.0' encoding='IBM850'?><!-- \x81 --><p>" + kMatrix + "</p>"},
        {"16 MiB", padded(16 << 20)},
    };
    for (const auto& [name, content] : kFiles) EXPECT_EQ(read(content), "WPC![1 2 3 4 5 6 7 8 9]") << name;
}

TEST_F(CalibrationTest, AFileThatIsRefusedLeavesTheRecordEmpty) {
    const std::string full = "<p>" + kMatrix + "</p>";
    std::string laughs = "<!DOCTYPE p [<!ENTITY e0 '1111111111'>";
    for (int i = 1; i < 10; ++i)
        laughs += "<!ENTITY e" + std::to_string(i) + " '" + times(10, "&e" + std::to_string(i - 1) + ";") + "'>";
    const std::pair<const char*, std::string> kFiles[] = {
        {"empty", ""},
        {"not XML", "gamma = 2.2\n"},
        {"ends before the root does", full.substr(0, full.size() - 4)},
        {"two roots", full + full},
        {"no root", "<?xml version='1.0'?><!-- -->"},
        {"not its encoding", "<?xml version='1.0' encoding='UTF-8'?><p>\xFF\xFE</p>"},
        {"nested too deep", "<p>" + kMatrix + times(10000, "<d>") + times(10000, "</d>") + "</p>"},
        {"an entity inside itself", "<!DOCTYPE p [<!ENTITY e '&e;'>]><p><CTM_WPC><v>&e;</v></CTM_WPC></p>"},
        {"larger than 16 MiB", padded((16 << 20) + 1)},
        {"declares an entity", "<!DOCTYPE p [<!ENTITY e '1'>]>" + full},
        {"declares a parameter entity", "<!DOCTYPE p [<!ATTLIST p a CDATA ''><!ENTITY % e ''>]>" + full},
        {"entities without end", laughs + "]><p><CTM_WPC><v>&e9;</v></CTM_WPC></p>"},
    };
    for (const auto& [name, content] : kFiles) {
        happened();
        EXPECT_EQ(read(content), "") << name;
        EXPECT_THAT(happened(), testing::Contains("log E parser: xmlParseFile error!")) << name;
    }
    phone.files().remove(kFile);
    ASSERT_EQ(mkfifo(phone.files().pathOf(kFile).c_str(), 0600), 0);
    EXPECT_EQ(read(), "") << "a pipe that nobody writes to";
    phone.files().remove(kFile);
    EXPECT_NE(read(full), "") << "the reader has recovered";
}

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
