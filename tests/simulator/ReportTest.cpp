// SPDX-License-Identifier: Apache-2.0
// What a report shows, as data.
#include "tools/report/ReportData.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

#include "tools/report/Page.h"

namespace simulator {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

// The record of a file that gives nothing.
ConfigXmlParser emptyRecord() {
    return ConfigXmlParser{};
}

constexpr Chromaticity kSomeWhite = {0.3, 0.31};

SessionRecord recordLines(const std::string& lines) {
    std::istringstream script(lines);
    return recordSession(script, "test", std::nullopt);
}

TEST(Report, CountsTheLevelsThatATableGives) {
    const std::vector<float> table = {-1.0F, 0.0F, NAN, 0.4F / 255, 0.6F / 255, 1.0F, 2.0F, INFINITY};
    EXPECT_EQ(uniqueLevels(table, 8), 3U);   // 0, 1 and 255
    EXPECT_EQ(uniqueLevels(table, 12), 4U);  // 0, 6, 10 and 4095
    EXPECT_EQ(uniqueLevels({}, 12), 0U);
}

TEST(Report, ComparesWithTheIdentityAndAPowerLaw) {
    const Json section = gammaSection(emptyRecord());
    // The last entry of the identity lies below 1 by 1/4096: twice 2048 at 12 bits. The power law leaves out steps near
    // black, where its first entry is 0.0228.
    EXPECT_EQ(section["uniqueLevels"], Json::parse(R"([{"table": "identity", "8": 256, "10": 1024, "12": 4095},
                                                       {"table": "1/2.2", "8": 249, "10": 933, "12": 2938}])"));
    EXPECT_TRUE(section["calibrated"].is_null());
}

TEST(Report, LociRunFromEndToEnd) {
    const Json section = chromaticitySection(emptyRecord(), {emptyRecord(), kSomeWhite}, std::nullopt);
    EXPECT_EQ(section["spectralLocus"].front(), Json::parse("[380, 0.1741, 0.005]"));
    EXPECT_EQ(section["spectralLocus"][28], Json::parse("[520, 0.0743, 0.8338]"));
    EXPECT_EQ(section["spectralLocus"].back(), Json::parse("[700, 0.7347, 0.2653]"));
    EXPECT_EQ(section["planckianLocus"].front()[0], kLocusMinKelvin);
    EXPECT_EQ(section["planckianLocus"].back()[0], kLocusMaxKelvin);
}

TEST(Report, SweepsBeginAtTheCalibratedWhiteAndCoverEveryLevel) {
    ConfigXmlParser record = emptyRecord();
    record.hasEyeCare = true;
    record.eyeCareMaxCCT = 6500;
    record.eyeCareMinCCT = 2900;
    const Json section = chromaticitySection(record, {record, kSomeWhite}, ColorManager());
    ASSERT_EQ(section["unlimited"].size(), 201U);
    ASSERT_EQ(section["eyeCare"].size(), 101U);
    EXPECT_EQ(section["unlimited"][0][0], -100);
    EXPECT_EQ(section["unlimited"][200][0], 100);
    EXPECT_LT(section["unlimited"][200][1], section["unlimited"][0][1]) << "cold has a smaller x than warm";
    EXPECT_GT(section["eyeCare"][100][1], section["eyeCare"][0][1]);
    for (const Json& neutral : {section["unlimited"][100], section["eyeCare"][0]}) {
        EXPECT_NEAR(neutral[1].get<float>(), kSomeWhite.x, 1e-6);
        EXPECT_NEAR(neutral[2].get<float>(), kSomeWhite.y, 1e-6);
    }
    EXPECT_EQ(section["whites"].size(), 4U);
}

TEST(Report, NamesWhatItAssumesOfThePanel) {
    ConfigXmlParser record = emptyRecord();
    EXPECT_EQ(PanelColors(record, std::nullopt).assumptions.size(), 2U);
    EXPECT_EQ(PanelColors(record, kSomeWhite).primaries.red.x, 0.66F);
    record.hasWpcParam = true;  // and all zero: no display
    const PanelColors panel(record, kSomeWhite);
    EXPECT_TRUE(panel.assumptions.empty());
    const Json section = chromaticitySection(record, panel, ColorManager());
    EXPECT_TRUE(section["whites"].is_null());
    EXPECT_THAT(section["assumptions"].dump(), HasSubstr("No display"));
}

TEST(Report, KeepsAPictureForEachLookOfTheDisplay) {
    const SessionRecord record = recordLines("init\ngetEyeCareCT 0\n\n# nothing\npicture x\nsetStandardMode 0 # on\n");
    ASSERT_EQ(record.steps.size(), 3U);
    EXPECT_EQ(record.steps[0]["before"], 0);
    EXPECT_EQ(record.steps[0]["after"], 1);
    EXPECT_EQ(record.steps[1]["after"], 1) << "a question changes nothing";
    EXPECT_EQ(record.steps[2]["after"], 2);
    EXPECT_EQ(record.steps[2]["comment"], "# on");
    EXPECT_EQ(record.pictures.size(), 3U);
    EXPECT_FALSE(record.pictures[1].contains("marked"));
    EXPECT_TRUE(record.pictures[2].contains("marked")) << "the colour correction clips saturated colours";
    EXPECT_EQ(record.calls.back()["call"], "setColorTransformMatrix");
    EXPECT_EQ(matricesSection(record.colors)[5]["largestOutput"], 1.0F);
}

TEST(Report, AWrongLineIsNamed) {
    try {
        recordLines("init\nsetEyeCare 0 1\n");
        FAIL();
    } catch (const std::runtime_error& error) {
        EXPECT_THAT(error.what(), HasSubstr("test:2: "));
    }
}

TEST(Report, LightThatStaysIsTwoSamples) {
    using std::chrono::milliseconds;
    const Json light = lightSection({{milliseconds(0), 300}, {milliseconds(60'000), 300}});
    ASSERT_EQ(light["samples"].size(), 2U);
    EXPECT_LE(light["samples"][0][0], 1000);
    EXPECT_GE(light["samples"][1][0], 60'000);
    EXPECT_TRUE(light["messages"].empty());
    const Json bright = lightSection({{milliseconds(0), 9000}, {milliseconds(5000), 100}});
    EXPECT_EQ(bright["messages"].back()[1], nullptr) << "the curve is dropped in the end";
}

TEST(Report, NothingInTheDataEndsItsScript) {
    const Json data = {{"text", "</script><!-- \xF8"}};
    const std::string page = renderPage(data);
    EXPECT_THAT(embeddable(data), Not(HasSubstr("<")));
    EXPECT_EQ(Json::parse(embeddable(data))["text"], "</script><!-- \uFFFD");
    EXPECT_THAT(page, HasSubstr(embeddable(data)));
    EXPECT_THAT(page, Not(HasSubstr("@REPORT_DATA@")));
    EXPECT_THAT(page, Not(HasSubstr("@JS@")));
}

TEST(Report, CodesBytesAsText) {
    EXPECT_EQ(base64({}), "");
    EXPECT_EQ(base64({'f'}), "Zg==");
    EXPECT_EQ(base64({'f', 'o'}), "Zm8=");
    EXPECT_EQ(base64({'f', 'o', 'o', 0xFF, 0xFE, 0xFD}), "Zm9v//79");
}

}  // namespace
}  // namespace simulator
