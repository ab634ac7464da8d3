// SPDX-License-Identifier: Apache-2.0
// The figures and their limits.
#include "tools/accuracy/Figures.h"

#include <gmock/gmock.h>

#include <cmath>
#include <filesystem>
#include <stdexcept>

#include "tests/TemporaryFolder.h"
#include "tests/accuracy/SyntheticPanel.h"
#include "tools/accuracy/Limits.h"
#include "tools/json/AccuracyJson.h"

namespace simulator {
namespace {

using ::testing::Each;
using ::testing::Field;
using ::testing::Ge;
using ::testing::Le;

const Target kSrgb = makeTarget(kSrgbPrimaries).value();

// Drives the panel with the coded color times gains in linear light, if exponent is that of its decoding.
DisplayState stateOf(double exponent, const Vec3& gains = {1, 1, 1}) {
    DisplayState state;
    for (size_t i = 0; i < 4096; ++i) {
        // The last entry also serves the level 1.
        const double level = i == 4095 ? 1 : static_cast<double>(i) / 4096;
        state.deGamma.entries[i] = static_cast<float>(std::pow(level, exponent));
        state.gamma.entries[i] = static_cast<float>(std::pow(level, 1 / exponent));
    }
    for (size_t i = 0; i < 3; ++i) state.last.elements[4 * i] = static_cast<float>(gains[i]);
    return state;
}

Figures predictedFigures(const DisplayState& state, const PanelModel& panel) {
    return figuresOf(state, panel, kSrgb, predicted(state, panel));
}

const PatchFigure& patch(const std::vector<PatchFigure>& patches, const std::string& name) {
    return *std::find_if(patches.begin(), patches.end(), [&name](const PatchFigure& p) { return p.name == name; });
}

TEST(DriveLevels, AreTheCodesOfThePipelineBeforeRounding) {
    DisplayState state;
    state.first.elements = std::array<float, 9>{0, 1, 0, 1, 0, 0, 0, 0, 1}.data();
    state.last.elements = std::array<float, 9>{0.9F, -0.2F, 0, 0.1F, 0.8F, 0.05F, 0, -0.3F, 1.4F}.data();
    for (int64_t i = 0; i < 256; ++i) state.toneCurve.push_back(std::min<int64_t>(4095, 20 * i));
    const Bytes colors = {0, 0, 0, 255, 255, 255, 12, 200, 90, 250, 3, 128, 77, 78, 79};
    const Bytes shown = showPicture({5, 1, colors}, state).picture.pixels;
    for (size_t i = 0; i < colors.size(); i += 3) {
        const Vec3 levels = driveLevels(state, {colors[i] / 255.0, colors[i + 1] / 255.0, colors[i + 2] / 255.0});
        for (size_t k = 0; k < 3; ++k) EXPECT_NEAR(255 * levels[k], shown[i + k], 0.5001) << i + k;
    }
}

TEST(FiguresTest, APanelLikeTheTargetIsRight) {
    const Figures figures = predictedFigures(stateOf(1), PanelModel(SyntheticPanel().measure(32)));
    EXPECT_NEAR(figures.white.kelvin.value(), 6504, 3);
    EXPECT_NEAR(figures.luminanceKept.value(), 1, 1e-6);
    EXPECT_NEAR(*figures.coverageXy + *figures.coverageUv, 200, 0.01);
    EXPECT_EQ(figures.greys.size(), 33U);
    EXPECT_THAT(figures.greys, Each(Field(&GreyFigure::deltaE, Le(0.05))));
    EXPECT_THAT(figures.colorChecker, Each(Field(&PatchFigure::deltaE, Le(0.05))));
    EXPECT_THAT(figures.primaries, Each(Field(&PatchFigure::deltaE, Le(0.05))));
    EXPECT_EQ(figures.primaries.front().name, "red");
    EXPECT_EQ(figures.codes.falls, 0);
    EXPECT_EQ(figures.codes.levels, 256);
}

TEST(FiguresTest, AStateThatChangesNothingLeavesThePanelAsItIs) {
    const SyntheticPanel panel{kSrgbPrimaries, {0.28, 0.29}, {2.4, 2.4, 2.4}, 0.1, 4.5};
    const Figures figures = predictedFigures(stateOf(1), PanelModel(panel.measure(32)));
    const Vec3 white = panel.xyz({1, 1, 1});
    EXPECT_NEAR(figures.white.xy.x, chromaticityOf(white).x, 1e-4);
    const Vec3 scaled = {100 * white[0] / white[1], 100, 100 * white[2] / white[1]};
    EXPECT_NEAR(figures.white.deltaE, deltaE2000(scaled, whiteOf(kSrgb), whiteOf(kSrgb)), 0.01);
    EXPECT_NEAR(figures.contrast.value(), 1001, 3);
    for (const GreyFigure& grey : figures.greys) {
        ASSERT_EQ(grey.gamma.has_value(), grey.level >= 0.1 && grey.level <= 0.9);
        const double least = grey.level < 0.4 ? -1 : 0.18;  // black's light lowers it in the dark
        EXPECT_THAT(grey.gammaError.value_or(0.2), ::testing::AllOf(Ge(least), Le(0.21))) << grey.level;
    }
}

TEST(FiguresTest, AGammaTableThatFallsAndABlackStateAreFound) {
    const PanelModel panel(SyntheticPanel().measure(32));
    DisplayState dip = stateOf(2.2);
    for (size_t i = 1000; i < 2000; ++i) dip.gamma.entries[i] = 0.4F;
    const Figures figures = predictedFigures(dip, panel);
    EXPECT_EQ(figures.codes.falls, 1);
    EXPECT_LT(figures.codes.levels, 220);
    EXPECT_THROW(predictedFigures(stateOf(2.2, {0, 0, 0}), panel), std::runtime_error);
}

TEST(FiguresTest, PatchesThatThePanelClipsAreApart) {
    SyntheticPanel narrow;
    narrow.primaries = {{0.58, 0.34}, {0.31, 0.56}, {0.155, 0.08}};
    const Figures figures = predictedFigures(stateOf(2.2), PanelModel(narrow.measure(32)));
    EXPECT_TRUE(patch(figures.primaries, "red").isPanelClipped);
    EXPECT_TRUE(patch(figures.colorChecker, "orange").isPanelClipped);
    EXPECT_FALSE(patch(figures.colorChecker, "dark skin").isPanelClipped);
    EXPECT_TRUE(patch(figures.colorChecker, "cyan").isTargetClipped);
    EXPECT_NEAR(errorsOf(figures.colorChecker)->largest, 3.307, 0.01);
    Figures beyond = figures;
    beyond.colorChecker = {patch(figures.primaries, "red")};
    EXPECT_EQ(judge(beyond, {})[4].isKept, false) << "no patch counts";
    EXPECT_LT(*figures.coverageXy, 80);
}

// A display that behaves as predicted measures as predicted; the files have units of their own.
TEST(FiguresTest, MeasuredPatchesTakeTheModelsPlace) {
    Measurement native = SyntheticPanel().measure(32);
    native.candelas = 4.0;
    const PanelModel panel(native);
    const DisplayState state = stateOf(2.2, {1, 0.9, 0.8});
    const std::vector<Patch> coded = standardPatches(kSrgb);
    ASSERT_EQ(coded.size(), 3U + 33 + 6 + 24);
    EXPECT_EQ(coded.back().rgb, coded.front().rgb);
    Measurement after{{}, 8.0};
    for (const Patch& driven : drivenPatches(state, coded)) {
        Vec3 xyz = panel.xyz(driven.rgb);
        for (double& value : xyz) value /= 2;
        after.patches.push_back({driven, xyz});
    }
    const auto predictedVerdicts = judge(predictedFigures(state, panel), {});
    const auto patches = measuredPatches(coded, after, native);
    const Figures figures = figuresOf(state, panel, kSrgb, measured(patches));
    const auto verdicts = judge(figures, {});
    ASSERT_EQ(verdicts.size(), predictedVerdicts.size());
    for (size_t i = 0; i < verdicts.size(); ++i) EXPECT_NEAR(*verdicts[i].value, *predictedVerdicts[i].value, 1e-6);
    EXPECT_NEAR(figures.luminanceKept.value(), 0.2126 + 0.9 * 0.7152 + 0.8 * 0.0722, 1e-3);
    EXPECT_NEAR(whiteDrift(patches).largest, 0, 1e-9);

    after.patches.resize(10);  // white and nine greys
    after.patches[0].xyz[0] *= 1.02;
    const auto few = measuredPatches(coded, after, native);
    const Figures part = figuresOf(state, panel, kSrgb, measured(few));
    EXPECT_EQ(part.greys.size(), 10U) << "the white is the last grey";
    EXPECT_TRUE(part.colorChecker.empty() && !part.coverageXy);
    const auto judged = judge(part, {});
    EXPECT_EQ(std::count_if(judged.begin(), judged.end(), [](const Verdict& v) { return v.isKept.has_value(); }), 4);
    const ColorErrors errors = compare(patches, few, whiteOf(kSrgb));
    EXPECT_NEAR(errors.mean, errors.largest / 10, 1e-9) << "one of ten differs";
    EXPECT_GT(whiteDrift({few[0], patches.back()}).largest, errors.largest / 3);
    EXPECT_THROW(figuresOf(state, panel, kSrgb, measured({})), std::runtime_error);
}

TEST(FiguresTest, TemperaturesOverTheLevelsOfAControl) {
    const PanelModel panel(SyntheticPanel().measure(32));
    std::vector<std::pair<int, DisplayState>> states;
    for (int level = 0; level <= 100; level += 25)
        states.emplace_back(level, stateOf(2.2, {1, 1 - level / 400.0, 1 - level / 160.0}));
    const auto warmer = temperaturesOf(states, stateOf(2.2), panel);
    EXPECT_LT(warmer.levels.back().kelvin.value(), 4500);
    EXPECT_EQ(warmer.isMonotone, true);
    EXPECT_NEAR(warmer.neutralDeltaE.value(), 0, 1e-9);

    std::swap(states[2].second, states[3].second);
    const auto turning = temperaturesOf(states, stateOf(2.2, {0.9, 1, 1}), panel);
    EXPECT_EQ(turning.isMonotone, false);
    states[4].second = stateOf(2.2, {0, 1, 0});
    EXPECT_EQ(temperaturesOf(states, stateOf(2.2), panel).isMonotone, std::nullopt) << "green has no temperature";
    EXPECT_GT(turning.neutralDeltaE.value(), 1);
}

TEST(LimitsTest, AFileReplacesWhatItNames) {
    const tests::TemporaryFolder folder;
    const Limits limits = readLimits(folder.write("limits.json", R"({"gamma": 0.25, "coverage": 90})"));
    EXPECT_TRUE(limits.gamma == 0.25 && limits.coverage == 90 && limits.white == Limits().white);

    const std::string names = "white, greyChroma, gamma, colorCheckerMean, colorCheckerLargest, coverage";
    const std::pair<const char*, std::string> kFaults[] = {
        {"3", " is not a JSON object; expected one of " + names},
        {"{\n\"gamma\": 1,\n}\n\n", "3: is not JSON; expected an object with some of " + names},
        {R"({"gamma": 1, "gamma": 2})", " repeats \"gamma\"; expected each limit once"},
        {R"({"gamma": 1e999})", " has a number that is out of range; expected limits"},
        {R"({"coverage": 0.98})", " coverage is 0.98; expected percent, from 1 to 100"},
        {R"({"Gamma": 1})", " has a limit \"Gamma\"; expected one of " + names},
        {R"({"gamma": "1"})", " gamma is \"1\"; expected a number above 0"},
        {R"({"white": 0})", " white is 0; expected a number above 0"},
    };
    EXPECT_EQ(errorOf([] { readLimits("none.json"); }), "none.json: does not exist; expected a JSON file of limits");
    for (const auto& [text, error] : kFaults) {
        const auto file = folder.write("limits.json", text);
        EXPECT_EQ(errorOf([&file] { readLimits(file); }), file.string() + ":" + error);
    }
}

}  // namespace
}  // namespace simulator
