// SPDX-License-Identifier: Apache-2.0
// Calibrations that are sound and calibrations that are not, and what is said of them.
#include "tools/check/Check.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <libxml/xmlerror.h>
#include <platform/DeviceFiles.h>

#include <cmath>
#include <fstream>
#include <functional>
#include <iterator>
#include <set>
#include <utility>

#include "tests/TemporaryFolder.h"
#include "tools/check/Rules.h"
#include "tools/json/CheckJson.h"

namespace simulator {
namespace {

namespace fs = std::filesystem;
using ::testing::IsEmpty;

const fs::path kShipped = fs::path(DISPLAY_CONTROL_DATA_DIR) / "phone/vendor/etc";
const fs::path kBroken = fs::path(DISPLAY_CONTROL_DATA_DIR) / "../tests/simulator/broken";

std::string readText(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

// A change to the text of a good calibration.
using Edit = std::function<void(std::string& xml)>;

Edit replace(const std::string& from, const std::string& to) {
    return [=](std::string& xml) { xml.replace(xml.find(from), from.size(), to); };
}

// Another content for a block.
Edit fill(const std::string& block, const std::string& content) {
    return [=](std::string& xml) {
        const size_t start = xml.find("<" + block + ">") + block.size() + 2;
        xml.replace(start, xml.find("</" + block + ">") - start, content);
    };
}

std::string elements(const std::vector<double>& values) {
    std::string text;
    for (const double value : values) text += "<v>" + numberText(value, 9) + "</v>";
    return text;
}

Edit matrix(const std::string& block, const std::vector<double>& values) {
    return fill(block, elements(values));
}

double usualGamma(size_t i) {
    return std::pow(static_cast<double>(i) / 4096.0, 1 / 2.2);
}

Edit gamma(const std::function<double(size_t i)>& output) {
    std::vector<double> table;
    for (size_t i = 0; i < 4096; ++i) table.push_back(output(i));
    return fill("Gamma_Calib", elements(table));
}

// The usual table, but for one value.
Edit gammaWith(size_t index, double value) {
    return gamma([=](size_t i) { return i == index ? value : usualGamma(i); });
}

// The usual table, stretched so that its last entries are 1.
Edit gammaClipped(size_t count) {
    return gamma([=](size_t i) { return std::min(1.0, usualGamma(i) / usualGamma(4096 - count)); });
}

// The cubics of the diagonal; the other coefficients are 0.
Edit eyeCare(const std::vector<double>& red, const std::vector<double>& green, const std::vector<double>& blue) {
    std::vector<double> coefficients(36);
    std::copy(red.begin(), red.end(), coefficients.begin());
    std::copy(green.begin(), green.end(), coefficients.begin() + 16);
    std::copy(blue.begin(), blue.end(), coefficients.begin() + 32);
    return fill("EyeCare", "<MaxCCT>6500</MaxCCT><MinCCT>2900</MinCCT>" + elements(coefficients));
}

Edit ends(const std::string& warm, const std::string& cold) {
    return fill("UnlimitedCT", "<Warm>" + warm + "</Warm><Cold>" + cold + "</Cold>");
}

Edit whole(const std::string& text) {
    return [=](std::string& xml) { xml = text; };
}

const std::string kFirst = "<v>1.000000</v>";  // of the white-point matrix

struct RuleCase {
    const char* rule;
    Edit good;  // near the rule's border, and nothing to be said of it
    Edit bad;
    const char* sentence;  // of the first finding of the rule
};

const RuleCase kRuleCases[] = {
    {"refused",
     [](std::string& xml) {
         xml.insert(xml.find("?>") + 2, "<!DOCTYPE p [<!ATTLIST v unit CDATA 'nit'>]>");
         xml.append("<!--" + std::string(2 << 20, ' ') + "-->");
     },
     whole("<!DOCTYPE p [<!ENTITY e '1'>]><p/>"),
     "declares entities and is not used; expected a document without entity declarations"},
    {"refused", [](std::string& xml) { xml.append(8 << 20, '\n'); },
     [](std::string& xml) { xml.append(16 << 20, '\n'); },
     "is too large and is not used; expected at most 16777216 bytes"},
    {"compressed", [](std::string&) {},
     whole(std::string("\x1F\x8B\x08\0\0\0\0\0\x02\x03\xB3\x29\xB0\xB3\x09\x0F\x70\x0E\x48\x2C\x4A\xCC\xD5\xB7\xB3\xD1"
                       "\x2F\xB0\x03\0\xE9\x53\x7D\xD9\x12\0\0\0",
                       38)),
     "is compressed, which the phone's libxml2 may not read; expected XML text"},
    {"encoding", [](std::string& xml) { xml.replace(0, xml.find("?>"), "<?xml version='1.0' encoding='iso-8859-1'"); },
     whole("<?xml version='1.0' encoding='IBM850'?><p><WPCParam/></p>"),
     R"(has the encoding "IBM850", which the phone's libxml2 may not read; expected UTF-8, UTF-16, ISO-8859-1 or ASCII)"},
    {"not-well-formed", replace(kFirst, "<one>1</one>"), replace(kFirst, "<one>1</v>"),
     "is not well-formed and is not used: Opening and ending tag mismatch: one line 18 and v; expected well-formed "
     "XML"},
    {"unknown-block", replace("<WPCParam>", "<!-- Gamma_Calibration --><WPCParam>"),
     replace("<WPCParam>", "<gama_Calib/><WPCParam>"),
     R"("gama_Calib" is not a block of a calibration and is ignored; expected Gamma_Calib)"},
    {"no-block",
     whole("<a><CTM_WPC><v>1</v><v>0</v><v>0</v><v>0</v><v>1</v><v>0</v><v>0</v><v>0</v><v>1</v></CTM_WPC></a>"),
     whole("<CTM_WPC/>"),
     "has no block of a calibration; expected blocks as the children of the document's first element"},
    {"short-block", replace(kFirst, "<v>1</v>"), replace(kFirst, ""),
     "CTM_WPC: has 8 of 9 values and is not complete; expected 9 values, an element each"},
    {"overlong-block", replace(kFirst, kFirst + "<!-- <v>0</v> -->"), replace(kFirst, kFirst + "<v>0</v>"),
     "CTM_WPC: value 10 is ignored with all that follow it (10 values in all); expected 9 values"},
    {"repeated-block", replace("<CTM_CCM>", "<!-- <CTM_WPC/> --><CTM_CCM>"),
     replace("<CTM_CCM>", "<CTM_WPC/><CTM_CCM>"),
     "CTM_WPC: occurs again and takes the place of the one in line 17; expected one block"},
    {"stray-text", replace(kFirst, "\n \t<v>1</v>"), replace(kFirst, kFirst + ","),
     "CTM_WPC: has text between its values, which is ignored; expected each value in its own element"},
    {"value-name", fill("UnlimitedCT", "<Cold>EDFDFF</Cold><Warm>FFFFEA</Warm>"),
     fill("UnlimitedCT", "<Cold>EDFDFF</Cold><Warn>FFFFEA</Warn>"),
     R"(UnlimitedCT: value 2 is named "Warn" and is ignored; Warm stays 0; expected Warm)"},
    {"value-name", replace("<MinCCT>2900</MinCCT>", "<MinCCT>2800</MinCCT>"),
     [](std::string& xml) {
         replace("<MinCCT>", "<MinCTT>")(xml);
         replace("</MinCCT>", "</MinCTT>")(xml);
     },
     R"(EyeCare: value 2 is named "MinCTT" and is taken as a coefficient; MinCCT stays 0; expected MinCCT)"},
    {"value-no-number", replace(kFirst, "<v> 1 </v>"), replace(kFirst, "<v>one</v>"),
     R"(CTM_WPC: value 1 "one" is not a number and is read as 0; expected a decimal number)"},
    {"value-trailing-text", replace(kFirst, "<v>1.0E0\n</v>"), replace(kFirst, "<v>1,05</v>"),
     R"(CTM_WPC: value 1 "1,05" is read as 1: it has a decimal comma instead of a point; expected a decimal number)"},
    {"value-base", ends("ffffea", "0XEDFDFF"), ends("16777194", "EDFDFF"),
     R"(UnlimitedCT: value 1 "16777194" is read as 0x16777194, as hexadecimal; expected a colour 0xRRGGBB, six hexadecimal digits)"},
    {"value-base", replace(kFirst, "<v>01</v>"), replace(kFirst, "<v>0x1</v>"),
     R"(CTM_WPC: value 1 "0x1" is read as 1, as hexadecimal; expected a decimal number)"},
    {"value-not-finite", replace(kFirst, "<v>+1</v>"), replace(kFirst, "<v>-Inf</v>"),
     R"(CTM_WPC: value 1 "-Inf" is read as minus infinity; expected a decimal number)"},
    {"value-range", replace("<v>0.000000</v>", "<v>1e-37</v>"), replace("<v>0.000000</v>", "<v>1e-60</v>"),
     R"(CTM_WPC: value 2 "1e-60" is read as 0, because it is too small; expected a decimal number)"},
    {"value-range", ends("0xFFFFEA", "0xFFFFFF"), ends("0xFFFFEA", "0x1000000"),
     R"(UnlimitedCT: value 2 "0x1000000" is read as 0x1000000, which is not a colour; expected a colour 0xRRGGBB, six hexadecimal digits)"},
    {"value-range", ends("0xFFFFEA", "EDFDFF"), ends("0xFFFFEA", "0xFFFFFFFFFFFFFFFFF"),
     R"(UnlimitedCT: value 2 "0xFFFFFFFFFFFFFFFFF" is read as 0xFFFFFFFF, which is not a colour; expected a colour 0xRRGGBB, six hexadecimal digits)"},
    {"value-not-plain", replace(kFirst, "<v><![CDATA[1]]></v>"), replace(kFirst, "<v><b>1</b></v>"),
     "CTM_WPC: value 1 is made of entities or of further elements; expected the number itself"},
    {"gamma-falls", gammaWith(112, usualGamma(111)), gammaWith(112, 0.19),
     "Gamma_Calib: value 113 is lower than the one before it (0.19 after 0.1939592); expected a table that does not "
     "fall"},
    {"gamma-range", gammaWith(4095, 1.0), gammaWith(4095, 1.0001),
     "Gamma_Calib: value 4096 is 1.0001; expected an output from 0 to 1"},
    {"gamma-flat", gammaClipped(128), gammaClipped(129),
     "Gamma_Calib: value 3968 and those up to value 4096 are all 1; expected at most 128 equal values in a "
     "row"},
    {"gamma-start", gammaWith(0, 0.0019), gammaWith(0, 0.002),
     "Gamma_Calib: value 1 is 0.002: black is not dark; expected 0, or less than half an 8-bit code"},
    {"gamma-end", gamma([](size_t i) { return usualGamma(i) * 0.993; }),
     gamma([](size_t i) { return usualGamma(i) * 0.992; }),
     "Gamma_Calib: value 4096 is 0.9918899: white is not full; expected 1, or less than two 8-bit codes off"},
    {"gamma-step", gamma([](size_t i) { return std::round(usualGamma(i) * 255) / 255; }),
     gamma([](size_t i) { return std::round(usualGamma(i) * 127) / 127; }),
     "Gamma_Calib: value 10 is 2.01 8-bit codes above the one before it, which shows as banding; "
     "expected a step of at most 1.65 here"},
    {"matrix-singular", matrix("CTM_WPC", {1, 0, 0, 0, 1, 0, 0, 0.01, 0.99}),
     matrix("CTM_WPC", {1, 0, 0, 0, 1, 0, 0, 1, 0}),
     "CTM_WPC: is singular: colours that differ become the same; expected rows that are not made of each other"},
    {"matrix-white", matrix("CTM_WPC", {1, 0, 0, 0, 0.9, 0, 0, 0, 0.75}),
     matrix("CTM_WPC", {1, 0, 0, 0, 0.9, 0, 0, 0, 0.7}),
     "CTM_WPC: moves white by 0.0346; expected white within 0.03 of where it was in CIE xy, taking sRGB's primaries "
     "for the panel's"},
    {"matrix-large", matrix("CTM_CCM", {1.5, 0, 0, 0, 1.5, 0, 0, 0, 1.5}),
     matrix("CTM_CCM", {1.51, 0, 0, 0, 1.5, 0, 0, 0, 1.5}),
     "CTM_CCM: has outputs up to 1.51 and darkens the picture by as much; expected none above 1.5"},
    {"matrix-negative", matrix("CTM_CCM", {1.25, -0.15, -0.09, 0, 1, 0, 0, 0, 1}),
     matrix("CTM_CCM", {1.26, -0.15, -0.11, 0, 1, 0, 0, 0, 1}),
     "CTM_CCM: has outputs down to -0.26, which clip to 0; expected none below -0.25"},
    {"matrix-transposed", matrix("CTM_CCM", {1.06, -0.055, -0.005, -0.013, 1.017, -0.004, 0.002, -0.001, 0.999}),
     matrix("CTM_CCM", {1.06, -0.013, 0.002, -0.055, 1.017, -0.001, -0.005, -0.004, 0.999}),
     "CTM_CCM: has columns that keep white and rows that do not (the rows add up to 1.049, 0.961, 0.99), as if "
     "transposed; expected the matrix by rows, each adding up to 1"},
    {"driver-white", matrix("CTM_WPC", {1, 0, 0, 0, 0.946, 0, 0, 0, 0.853}),
     matrix("CTM_WPC", {1, 0, 0, 0, 0.967, 0, 0, 0, 0.915}),
     "CTM_WPC: brings the driver's white 0.301, 0.317 to 0.3073, 0.3237 in CIE xy; expected D65 (0.3127, 0.329) "
     "within 0.005"},
    {"unlimited-monotone", ends("FFFFEA", "FFFFFF"), ends("FFFFEA", "FFFFFE"),
     "UnlimitedCT: has a cold end that is warmer than neutral (blue over red in linear light 0.991): white turns back "
     "on the way; expected neutral between the ends"},
    {"eye-care-neutral", eyeCare({1}, {1, -0.2}, {1.004, -0.5}), eyeCare({1}, {1, -0.2}, {0.99, -0.5}),
     "EyeCare: is not neutral at level 0, where element 9 of its matrix is 0.99; expected 1 within 0.005, of the "
     "identity"},
    {"eye-care-monotone", eyeCare({1}, {1, -0.2}, {1, -0.8, 0.4}), eyeCare({1}, {1, -0.2}, {1, -0.8, 0.5}),
     "EyeCare: gets colder again at level 85 (blue over red of white 0.681 after 0.68); expected a white that only "
     "gets warmer"},
    {"warm-end", ends("FFFFFE", "FFFFFF"), ends("FFFFFF", "FFFFFF"),
     "UnlimitedCT: has a warm end that is not warmer than the cold one (blue over red in linear light 1 and 1); "
     "expected less blue at the warm end"},
    {"temperature-range", replace("<MaxCCT>6500", "<MaxCCT>2901"), replace("<MaxCCT>6500", "<MaxCCT>2900"),
     "EyeCare: has a maximum of 2900 K and a minimum of 2900 K; expected a maximum above the minimum"},
    {"value-range", ends("0xFFFFEA", "EDFDFF"), ends("0xFFFFEA", "0xDFF"),
     R"(UnlimitedCT: value 2 "0xDFF" is read as 0x000DFF, from 3 digits; expected a colour 0xRRGGBB, six hexadecimal digits)"},
    {"temperature-range", replace("<MaxCCT>6500", "<MaxCCT>25000"), replace("<MaxCCT>6500", "<MaxCCT>25001"),
     "EyeCare: has an end at 25001 K; expected colour temperatures from 1000 to 25000 K"},
    {"primaries", matrix("WPCParam", {0.64, 0.30, 0.15, 0.33, 0.60, 0.06, 0, 0, 0}),
     matrix("WPCParam", {0.30, 0.64, 0.15, 0.60, 0.33, 0.06, 0, 0, 0}),
     "WPCParam: has primaries that span -0.112 in CIE xy, taken as x and then y of red, green, blue; expected a "
     "triangle with red, green and blue counterclockwise, of at least 0.02 (sRGB: 0.112)"},
    {"primaries", matrix("WPCParam", {0.64, 0.30, 0.324, 0.33, 0.60, 0.06, 0, 0, 0}),
     matrix("WPCParam", {0.64, 0.30, 0.327, 0.33, 0.60, 0.06, 0, 0, 0}),
     "WPCParam: has a triangle of primaries that D65 is outside of; expected white inside the triangle"},
};

class CheckTest : public ::testing::Test {
protected:
    CheckedCalibration check(const std::string& text) const {
        return checkCalibration(folder.write("calibration.xml", text), driverWhite);
    }

    // What is found once a good calibration has been changed, all of it or one rule's.
    std::vector<std::string> found(const Edit& edit, const std::string& rule = "") const {
        std::string xml = readText(kShipped / "disp_calib_data_default.xml");
        edit(xml);
        std::vector<std::string> sentences;
        for (const Finding& finding : check(xml).findings) {
            if (rule.empty() || finding.rule == rule) sentences.push_back(sentenceOf(finding));
        }
        return sentences;
    }

    const tests::TemporaryFolder folder;
    std::optional<Chromaticity> driverWhite;
};

TEST_F(CheckTest, EachRuleKnowsGoodFromBad) {
    for (const auto& [rule, good, bad, sentence] : kRuleCases) {
        driverWhite = rule == std::string("driver-white") ? std::optional(Chromaticity{0.301, 0.317}) : std::nullopt;
        EXPECT_THAT(found(good), IsEmpty()) << rule;
        const std::vector<std::string> sentences = found(bad, rule);
        ASSERT_FALSE(sentences.empty()) << rule << ": " << sentence;
        EXPECT_EQ(sentences.front(), sentence);
    }
}

TEST_F(CheckTest, EveryRuleHasACase) {
    for (const auto& rules : {textRules(), valueRules()}) {
        for (const Rule& rule : rules) {
            EXPECT_TRUE(std::any_of(std::begin(kRuleCases), std::end(kRuleCases), [&](const RuleCase& c) {
                return c.rule == rule.name;
            })) << rule.name;
        }
    }
}

TEST_F(CheckTest, AWreckedTableIsListedInPartAndCountedInWhole) {
    std::string xml = readText(kShipped / "disp_calib_data_default.xml");
    gamma([](size_t i) { return 1 - usualGamma(i); })(xml);
    std::vector<Finding> falls;
    for (const Finding& finding : check(xml).findings) {
        if (finding.rule == "gamma-falls") falls.push_back(finding);
    }
    ASSERT_EQ(falls.size(), kMostFindings + 1);
    EXPECT_EQ(sentenceOf(falls.back()), "Gamma_Calib: 4090 more like this");
    EXPECT_EQ(countOf(falls, Finding::Severity::WARNING), 4095u);
    EXPECT_EQ(countOf(falls, Finding::Severity::ERROR), 0u);
}

// Compares a list with the stored one, which has an element a line; what differs is left in a file to look at, or to
// store.
void expectStored(const Json& actual, const fs::path& stored) {
    if (fs::exists(stored) && Json::parse(readText(stored)) == actual) return;
    const fs::path place = fs::path(testing::TempDir()) / stored.filename();
    std::ofstream stream(place);
    const char* separator = "[\n";
    for (const Json& element : actual) stream << std::exchange(separator, ",\n") << element.dump();
    stream << "\n]\n";
    ADD_FAILURE() << stored << " is not what is found now, which is in " << place;
}

TEST_F(CheckTest, TheShippedCalibrationsAreSound) {
    Json all = Json::array();
    for (const std::string name : {"0a", "0b", "default"}) {
        const CheckedCalibration checked = checkCalibration(kShipped / ("disp_calib_data_" + name + ".xml"));
        EXPECT_TRUE(checked.findings.empty()) << name << ": " << sentenceOf(checked.findings.front());
        all.push_back({{"calibration", name}, {"summary", toJson(summaryOf(checked))}});
    }
    expectStored(all, kBroken / "../shipped_calibrations.json");
}

TEST_F(CheckTest, BrokenFilesAreToldApart) {
    std::set<fs::path> files;
    for (const auto& entry : fs::directory_iterator(kBroken)) {
        if (entry.path().extension() == ".xml") files.insert(entry.path());
    }
    Json all = Json::array();
    for (const fs::path& broken : files) {
        for (const Finding& finding : checkCalibration(broken).findings) {
            all.push_back({{"file", broken.filename().string()}, {"finding", toJson(finding)}});
        }
    }
    expectStored(all, kBroken / "findings.json");
}

TEST_F(CheckTest, WhatCannotBeReadIsAnException) {
    for (const fs::path& path : {kBroken, kBroken / "none.xml", fs::path("/dev/null")}) {
        EXPECT_THROW(checkCalibration(path), std::runtime_error) << path;
    }
}

TEST_F(CheckTest, NothingOfTheProcessIsLeftChanged) {
    const auto handler = [](void*, xmlErrorPtr) {};
    int context = 0;
    xmlSetStructuredErrorFunc(&context, handler);
    platform::setDeviceRoot("/somewhere");
    check("<broken");
    EXPECT_EQ(platform::devicePath("/x"), "/somewhere/x");
    EXPECT_EQ(xmlStructuredErrorContext, &context);
    platform::setDeviceRoot("");
    xmlSetStructuredErrorFunc(nullptr, nullptr);
}

}  // namespace
}  // namespace simulator
