// SPDX-License-Identifier: Apache-2.0
#include "tools/report/ReportData.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "tests/ErrorOf.h"
#include "tests/TemporaryFolder.h"
#include "tools/report/Page.h"

namespace simulator {
namespace {

using ::testing::DoubleNear;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::Pointwise;

constexpr Chromaticity kSomeWhite = {0.3, 0.31};

SessionRecord recordLines(const std::string& lines) {
    std::istringstream script(lines);
    return recordSession(ScriptFile(script, "test"), std::nullopt);
}

TEST(Report, CurvesOfWhiteBeginAtTheCalibratedWhiteAndCoverEveryLevel) {
    ConfigXmlParser record{};
    record.hasEyeCare = true;
    record.eyeCareMaxCCT = 6500;
    record.eyeCareMinCCT = 2900;
    const auto section = chromaticitySection(record, panelColors(record, kSomeWhite), ColorManager());
    const ColorCurve& unlimited = section.unlimited;
    const ColorCurve& eyeCare = section.eyeCare;
    ASSERT_EQ(unlimited.size(), 201U);
    ASSERT_EQ(eyeCare.size(), 101U);
    EXPECT_EQ(unlimited.front().value, -100);
    EXPECT_EQ(unlimited.back().value, 100);
    EXPECT_LT(unlimited.back().xy.x, unlimited.front().xy.x) << "cold has a smaller x than warm";
    EXPECT_GT(eyeCare.back().xy.x, eyeCare.front().xy.x);
    for (const CurvePoint& neutral : {unlimited[100], eyeCare[0]}) {
        EXPECT_NEAR(neutral.xy.x, kSomeWhite.x, 1e-6);
        EXPECT_NEAR(neutral.xy.y, kSomeWhite.y, 1e-6);
    }
    EXPECT_EQ(section.whites.size(), 4U);
}

TEST(Report, NamesWhatItAssumesOfThePanel) {
    ConfigXmlParser record{};
    EXPECT_EQ(panelColors(record, std::nullopt).assumptions.size(), 2U);
    EXPECT_EQ(panelColors(record, kSomeWhite).primaries.red.x, 0.66F);
    record.hasWpcParam = true;  // and all zero: no display
    const PanelColors panel = panelColors(record, kSomeWhite);
    EXPECT_TRUE(panel.assumptions.empty());
    const auto section = chromaticitySection(record, panel, ColorManager());
    EXPECT_TRUE(section.whites.empty());
    EXPECT_THAT(section.panel.assumptions, ElementsAre(HasSubstr("No display")));
}

TEST(Report, KeepsAPictureForEachLookOfTheDisplay) {
    const SessionRecord record = recordLines("init\ngetEyeCareCT 0\n\n# nothing\npicture x\nsetStandardMode 0 # on\n");
    ASSERT_EQ(record.steps.size(), 3U);
    EXPECT_EQ(record.steps[0].before, 0U);
    EXPECT_EQ(record.steps[0].after, 1U);
    EXPECT_EQ(record.steps[1].after, 1U) << "a question changes nothing";
    EXPECT_EQ(record.steps[2].after, 2U);
    EXPECT_EQ(record.steps[2].comment, "# on");
    ASSERT_EQ(record.pictures.size(), 3U);
    EXPECT_TRUE(record.pictures[1].marked.empty());
    EXPECT_FALSE(record.pictures[2].marked.empty()) << "the colour correction clips saturated colours";
    EXPECT_EQ(record.calls.back().call.operation, ComposerOperation::SET_COLOR_TRANSFORM_MATRIX);
    EXPECT_EQ(ColorManager::maxRgb(stageMatrices(*record.colors).back().matrix), 1.0F);
}

TEST(Report, AWrongLineIsNamed) {
    EXPECT_THAT(tests::errorOf([] { recordLines("init\nsetEyeCare 0 1\n"); }), HasSubstr("test:2: "));
}

TEST(Report, ShowsColorsOfTheTargetInItsOwnCodes) {
    const auto p3 = makeTarget(kDisplayP3Primaries);
    const Vec3 half = {srgbToLinear(0.5), 0, 1};
    const Vec3 xyz = multiply(p3->toXyz, half);
    EXPECT_THAT(codedColor(*p3, xyz), Pointwise(DoubleNear(1e-9), Vec3{0.5, 0, 1}));
    const auto srgb = makeTarget(kSrgbPrimaries);
    EXPECT_EQ(codedColor(*srgb, xyzOf(*p3, {0, 1, 0}))[0], 0) << "sRGB cannot show the green of Display P3";
}

TEST(Report, AccuracyIsOfTheStateAfterTheScript) {
    const tests::TemporaryFolder folder;
    ReportInput input;
    input.panel = {dataFolder() / "panels/cool.ti3", *makeTarget(kSrgbPrimaries)};
    const auto kelvin = [&input] { return *gatherReport(input).accuracy->figures.white.kelvin; };
    const double standard = kelvin();
    input.script = folder.write("warm.script", "init\nsetStandardMode 0\nsetUnlimitedCT 0 -100\n");
    EXPECT_LT(kelvin(), standard - 1000);
    input.script = folder.write("stop.script", "init\ncomposer stop\n");
    EXPECT_THAT(gatherReport(input).accuracyFault, HasSubstr("the composer has no display 0 after the script"));
}

TEST(Report, LightThatStaysIsTwoSamples) {
    using std::chrono::milliseconds;
    const LightSection light = lightSection({{milliseconds(0), 300}, {milliseconds(60'000), 300}});
    ASSERT_EQ(light.samples.size(), 2U);
    EXPECT_LE(light.samples[0].time, milliseconds(1000));
    EXPECT_GE(light.samples[1].time, milliseconds(60'000));
    EXPECT_TRUE(light.messages.empty());
    const LightSection bright = lightSection({{milliseconds(0), 9000}, {milliseconds(5000), 100}});
    EXPECT_EQ(bright.messages.back().level, std::nullopt) << "the curve is dropped in the end";
}

TEST(Report, NothingInTheDataEndsItsScript) {
    const std::string page = renderPage(R"({"text": "</script><!-- "})");
    EXPECT_THAT(page, HasSubstr(R"({"text": "\u003c/script>\u003c!-- "})"));
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
