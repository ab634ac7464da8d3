// SPDX-License-Identifier: Apache-2.0
// From a measured panel to its calibration, to the file, and to what differs between two files.
#include "tools/accuracy/Calibrate.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <functional>

#include "color/ColorManager.h"
#include "simulator/closed/EyeCare.h"
#include "simulator/closed/UnlimitedColorTemperature.h"
#include "tests/TemporaryFolder.h"
#include "tests/accuracy/SyntheticPanel.h"
#include "tools/accuracy/CalibrationDifferences.h"
#include "tools/accuracy/CalibrationFile.h"
#include "tools/accuracy/Figures.h"
#include "tools/accuracy/SimulatedBlocks.h"
#include "tools/text/Text.h"

namespace simulator {
namespace {

using ::testing::Le;
using ::vendor::kov::hardware::display_control::V1_0::implementation::ColorManager;

const Target kSrgb = makeTarget(kSrgbPrimaries).value();
constexpr Primaries kWide = {{0.675, 0.322}, {0.255, 0.700}, {0.148, 0.052}};
constexpr Primaries kNarrow = {{0.622, 0.342}, {0.318, 0.571}, {0.154, 0.079}};
const SyntheticPanel kAgreeing = {kWide, {0.301, 0.317}, {2.2, 2.2, 2.2}, 0, 4.5};

PanelModel modelOf(const SyntheticPanel& panel, double noise = 0) {
    return PanelModel(panel.measure(24, 5, noise));
}

// What the composer holds with the calibration in standard mode.
DisplayState stateOf(const PanelCalibration& calibration) {
    DisplayState state;
    const Vec3 kUnit = {1, 1, 1};
    ColorManager colors;
    for (size_t i = 0; i < 9; ++i) colors.ccmCtm[i] = static_cast<float>(calibration.colorCorrection[i]);
    for (size_t i = 0; i < 3; ++i) colors.wpcCtm[4 * i] = static_cast<float>(calibration.gains[i]);
    state.last.elements = colors.finalCtm().data();
    for (size_t i = 0; i < kGammaEntries; ++i) state.gamma.entries[i] = static_cast<float>(calibration.gamma[i]);
    EXPECT_NEAR(multiply(calibration.colorCorrection, kUnit)[1], 1, 1e-9) << "keeps white";
    EXPECT_EQ(*std::max_element(calibration.gains.begin(), calibration.gains.end()), 1);
    return state;
}

struct PanelCase {
    const char* name;
    SyntheticPanel panel;
    double noise;
    double white, mean, largest;  // delta E 2000, at most
    bool hasOutOfGamut;
};
const PanelCase kPanels[] = {
    {"channels that agree", kAgreeing, 0, 0.02, 0.1, 0.3, false},
    {"another curve", {kWide, {0.301, 0.317}, {1.8, 1.8, 1.8}, 0, 1}, 0, 0.02, 0.1, 0.3, false},
    {"a bright black", {kWide, {0.301, 0.317}, {2.2, 2.2, 2.2}, 0.3, 1}, 0, 0.3, 0.3, 2, true},
    {"channels that differ", {kWide, {0.301, 0.317}, {2.235, 2.2, 2.165}, 0.05, 1}, 0, 0.3, 0.6, 2.0, false},
    {"and noise", {kWide, {0.301, 0.317}, {2.235, 2.2, 2.165}, 0.05, 1}, 0.005, 0.5, 0.8, 2.5, false},
    {"channels that cannot fit one table", {kWide, {0.301, 0.317}, {2.8, 2.2, 1.6}, 0.05, 1}, 0, 0.5, 9, 22, false},
    {"a narrow gamut", {kNarrow, {0.319, 0.336}, {2.2, 2.2, 2.2}, 0.05, 1}, 0, 0.1, 0.1, 0.5, true},
};

// The figures are those of the panel itself, not of its model.
TEST(CalibrateTest, ThePanelComesAsCloseToTheTargetAsItCan) {
    for (const auto& [name, panel, noise, white, mean, largest, hasOutOfGamut] : kPanels) {
        SCOPED_TRACE(name);
        const PanelModel model = modelOf(panel, noise);
        const PanelCalibration calibration = calibrate(model, kSrgb);
        EXPECT_THAT(calibration.fitted.front(), Le(white));
        for (const auto& errors : {calibration.fitted, calibration.keptOut}) {
            EXPECT_THAT(summaryOf(errors).mean, Le(mean));
            EXPECT_THAT(summaryOf(errors).largest, Le(largest));
        }
        EXPECT_TRUE(warningsOf(calibration).empty());
        EXPECT_EQ(calibration.outOfGamut > 0, hasOutOfGamut);
        EXPECT_EQ(calibration.fitted.size() + calibration.keptOut.size() + calibration.outOfGamut, 33U + 120 + 24);
        EXPECT_NEAR(static_cast<double>(calibration.fitted.size() - 33) / 4,
                    static_cast<double>(calibration.keptOut.size()), 1);

        const DisplayState state = stateOf(calibration);
        const auto shown = [&panel = panel, &state](const Vec3& rgb) {
            return std::optional(panel.xyz(driveLevels(state, rgb)));
        };
        const Figures figures = figuresOf(state, model, kSrgb, shown);
        EXPECT_THAT(figures.white.deltaE, Le(white + 0.1));
        const ColorErrors chart = errorsOf(figures.colorChecker).value();
        EXPECT_THAT(chart.mean, Le(mean));
        EXPECT_THAT(chart.largest, Le(largest));
        EXPECT_EQ(figures.codes.falls, 0);
        for (const GreyFigure& grey : figures.greys) EXPECT_THAT(std::abs(grey.gammaError.value_or(0)), Le(0.03));
    }
}

TEST(CalibrateTest, TheTableRisesFromBlackToFullDriveAtTheHighestDecodedLevel) {
    for (const double black : {0.0, 0.1, 1.0}) {
        SyntheticPanel panel = kAgreeing;
        panel.black = black;
        const std::vector<double> gamma = calibrate(modelOf(panel), kSrgb).gamma;
        ASSERT_EQ(gamma.size(), kGammaEntries);
        const double highest = 4096 * std::pow(4095.0 / 4096, 2.2);
        EXPECT_EQ(gamma.front(), 0);
        EXPECT_LT(gamma[static_cast<size_t>(highest)], 1);
        EXPECT_EQ(gamma[static_cast<size_t>(highest) + 1], 1);
        EXPECT_EQ(std::adjacent_find(gamma.begin(), gamma.begin() + 4094, std::greater_equal<>()), gamma.begin() + 4094)
            << black;
    }
}

// Composers decode with 2.2, so that colours are approximate.
TEST(CalibrateTest, AnotherExponentIsRightForGreysAndNearForColors) {
    const PanelModel model = modelOf(kAgreeing);
    for (const double exponent : {2.0, 2.4}) {
        const Target target = makeTarget(kSrgbPrimaries, kD65, exponent).value();
        const DisplayState state = stateOf(calibrate(model, target));
        const Figures figures = figuresOf(state, model, target, predicted(state, model));
        EXPECT_THAT(figures.white.deltaE, Le(0.3));
        for (const GreyFigure& grey : figures.greys) EXPECT_THAT(std::abs(grey.gammaError.value_or(0)), Le(0.02));
        EXPECT_THAT(errorsOf(figures.colorChecker).value().mean, Le(1));
        EXPECT_NEAR(figures.greys[16].gamma.value(), exponent, 0.02);
    }
}

TEST(CalibrateTest, AWhiteThatThePanelCannotShowIsRefused) {
    const Target green = makeTarget(kDisplayP3Primaries, {0.28, 0.64}).value();
    const SyntheticPanel narrow{kNarrow, {0.319, 0.336}, {2.2, 2.2, 2.2}, 0, 1};
    EXPECT_EQ(errorOf([&] { calibrate(modelOf(narrow), green); }),
              "the panel cannot show the target's white; expected one inside its gamut");
    EXPECT_THAT(warningsOf({{}, {}, {}, {0.7, 0.1}, {}, 0}),
                ::testing::ElementsAre("white is dE2000 0.70 from the target, above 0.5"));
}

TEST(SimulatedBlocks, TheControlsReachTheirTemperaturesOnThePanel) {
    const PanelModel panel = modelOf(kAgreeing);
    ConfigXmlParser record{};
    setSimulatedBlocks(panel, record);
    const Mat3 light = panel.light();
    const auto kelvinOf = [&](const Chromaticity& white, const Vec3& gains) {
        Vec3 linear = multiply(inverse(light).value(), xyzOf(white));
        for (size_t i = 0; i < 3; ++i) linear[i] *= gains[i];
        return correlatedColorTemperature(chromaticityOf(multiply(light, linear))).value();
    };
    const EndPoints ends = {record.unlimitedWarm, record.unlimitedCold};
    EXPECT_NEAR(kelvinOf(kD65, unlimitedGains(ends, kUnlimitedWarmest).value()), 4500, 40) << "8 bits";
    EXPECT_NEAR(kelvinOf(kD65, unlimitedGains(ends, kUnlimitedColdest).value()), 9300, 100);

    EyeCareParams eyeCare{{}, static_cast<int32_t>(record.eyeCareMaxCCT), static_cast<int32_t>(record.eyeCareMinCCT)};
    eyeCare.coeffs.assign(std::begin(record.eyeCareCoeffs), std::end(record.eyeCareCoeffs));
    EXPECT_EQ(eyeCareMatrix(eyeCare, 0).value(), (Mat3{1, 0, 0, 0, 1, 0, 0, 0, 1}));
    for (const int level : {25, 50, 100}) {
        const Mat3 matrix = eyeCareMatrix(eyeCare, level).value();
        const double kelvin = kelvinOf(planckianLocus(6500).value(), {matrix[0], matrix[4], matrix[8]});
        EXPECT_NEAR(kelvin, eyeCareTemperature(eyeCare, level), 30) << level;
    }
    EXPECT_NEAR(record.wpcParam[1], kWide.green.x, 1e-3);
    EXPECT_NEAR(record.wpcParam[5], kWide.blue.y, 1e-3);
}

class CalibrationFileTest : public ::testing::Test {
protected:
    CalibrationFileTest() {
        setCalibration(calibrate(model, kSrgb), record);
        setSimulatedBlocks(model, record);
    }
    std::unique_ptr<ConfigXmlParser> readBack() const {
        return readCalibrationFile(folder.write("panel.xml", calibrationXml(record, "-->--\x01 panel")));
    }
    std::vector<std::string> differencesFrom(const ConfigXmlParser& before) const {
        std::vector<std::string> sentences;
        for (const BlockDifference& difference : differencesOf(before, record))
            sentences.push_back(sentenceOf(difference));
        return sentences;
    }

    const tests::TemporaryFolder folder;
    const PanelModel model = modelOf(kAgreeing);
    ConfigXmlParser record{};
};

TEST_F(CalibrationFileTest, WhatIsWrittenIsRead) {
    record.eyeCareCoeffs[5] = -1e-9;
    record.wpcParam[8] = 1e-20F;
    EXPECT_THAT(differencesFrom(*readBack()), ::testing::IsEmpty());
    EXPECT_FALSE(readBack()->hasGammaTuning);

    ConfigXmlParser copy{};
    copyLibraryBlocks(record, copy);
    record.hasCtmWpc = record.hasCtmCcm = record.hasGammaCalib = false;
    EXPECT_THAT(differencesFrom(*readBack()), ::testing::IsEmpty());
    EXPECT_TRUE(differencesOf(record, copy).empty()) << "the blocks of the closed libraries alone";

    EXPECT_EQ(errorOf([] { readCalibrationFile("none.xml"); }).substr(0, 9), "none.xml:");
    const auto broken = folder.write("broken.xml", "<DisplayCalibration>");
    EXPECT_EQ(errorOf([&] { readCalibrationFile(broken); }),
              broken.string() + ": the library refuses it; expected a calibration file (dcsim check)");
}

TEST_F(CalibrationFileTest, DifferencesAreNamedWithTheLargest) {
    const auto before = readBack();
    std::copy_n(before->ctmWpc, 9, record.ctmWpc);
    record.ctmWpc[4] = before->ctmWpc[4] - 0.25F;
    record.ctmWpc[8] = before->ctmWpc[8] + 0.5F;
    record.gammaCalib[4095] = 0.5F;
    record.unlimitedCold = 0xFFFFFF;
    record.eyeCareMinCCT = 2700;
    record.hasWpcParam = false;
    const std::string white = "CTM_WPC: 2 values differ, most of all value 9: " + shortest(record.ctmWpc[8]) +
                              ", was " + shortest(before->ctmWpc[8]);
    char cold[64];
    snprintf(cold, sizeof cold, "UnlimitedCT: 1 value differs, value 2: 0xFFFFFF, was 0x%06X",
             static_cast<unsigned>(before->unlimitedCold));
    EXPECT_THAT(differencesFrom(*before),
                ::testing::ElementsAre(white, "Gamma_Calib: 1 value differs, value 4096: 0.5, was 1", cold,
                                       "EyeCare: 1 value differs, value 2: 2700, was 2900",
                                       "WPCParam: only in the first file"));

    record = *before;
    record.eyeCareMaxCCT += 1e-6;
    record.gammaCalib[4095] = std::nextafter(1.0F, 0.0F);
    EXPECT_THAT(differencesFrom(*before),
                ::testing::ElementsAre("Gamma_Calib: 1 value differs, value 4096: 0.99999994, was 1",
                                       "EyeCare: 1 value differs, value 1: 6500.000001, was 6500"));

    DisplayState darker;
    darker.last.elements[8] = 0.8F;
    ASSERT_EQ(differencesOf(DisplayState(), darker).size(), 1U);
    EXPECT_EQ(sentenceOf(differencesOf(DisplayState(), darker)[0]), "matrix: 1 value differs, value 9: 0.8, was 1");
    const ColorErrors errors = compareShown(DisplayState(), darker, model, kSrgb);
    EXPECT_GT(errors.mean, 2);
    EXPECT_EQ(compareShown(darker, darker, model, kSrgb).largest, 0);
}

}  // namespace
}  // namespace simulator
