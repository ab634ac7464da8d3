// SPDX-License-Identifier: Apache-2.0
// The simulated closed colour libraries, as the library calls them.
#include <gmock/gmock.h>

#include <array>
#include <climits>
#include <cmath>
#include <limits>
#include <utility>
#include <vector>

#include "color/ColorManager.h"
#include "simulator/Phone.h"
#include "simulator/closed/EyeCare.h"
#include "simulator/closed/UnlimitedColorTemperature.h"
#include "simulator/closed/WhitePoint.h"

namespace simulator {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::FloatNear;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr float kUntouched = -7.0F;

// Each test begins with libraries that nobody has configured.
//
// gains(level) and matrix(level) ask the libraries as the phone does, with an array that holds kUntouched.
class ClosedLibrariesTest : public testing::Test {
protected:
    template <size_t N>
    static std::array<float, N> ask(int (*library)(int, float*), int level, int expectedError) {
        std::array<float, N> result;
        result.fill(kUntouched);
        EXPECT_EQ(library(level, result.data()), expectedError) << level;
        return result;
    }

    static auto gains(int level, int expectedError = 0) { return ask<3>(getUnlimitedCTParams, level, expectedError); }
    static auto matrix(int level, int expectedError = 0) { return ask<9>(getEyeCareCoeffOled, level, expectedError); }

    static int setEyeCare(std::vector<double> coefficients, int32_t maxCCT, int32_t minCCT) {
        EyeCareParams params{std::move(coefficients), maxCCT, minCCT};
        return setEyeCareParamsOled(params);
    }

    Phone phone{Phone::Start::EMPTY};

    static std::vector<double> locus() { return std::vector<double>(kEyeCareCoefficients, 0.0); }

    static std::vector<double> locusBut(double firstCoefficient) {
        std::vector<double> result = locus();
        result[0] = firstCoefficient;
        return result;
    }
};

TEST_F(ClosedLibrariesTest, UnlimitedRunsFromTheWarmEndOverNeutralToTheColdOne) {
    ASSERT_EQ(setParams(0xFF8000, 0x0080FF), 0);
    EXPECT_THAT(gains(0), Each(1.0F));
    const float half = 0.215861F;  // 0x80 in linear light
    EXPECT_THAT(gains(-100), ElementsAre(1.0F, FloatNear(half, 1e-6F), 0.0F));
    EXPECT_THAT(gains(-50), ElementsAre(1.0F, FloatNear((1 + half) / 2, 1e-6F), 0.5F));
    EXPECT_THAT(gains(100), ElementsAre(0.0F, FloatNear(half, 1e-6F), 1.0F));
}

TEST_F(ClosedLibrariesTest, UnlimitedFallsSteadilyAndKeepsItsLargestGain) {
    ASSERT_EQ(setParams(0xE0D0A0, 0x90A0C0), 0);
    for (int level = 1; level <= 100; ++level) {
        const auto [warmR, warmG, warmB] = gains(-level);
        const auto [coldR, coldG, coldB] = gains(level);
        EXPECT_TRUE(warmR == 1.0F && coldB == 1.0F) << level;
        EXPECT_TRUE(0.0F < warmB && warmB < warmG && warmG < 1.0F) << level;
        EXPECT_TRUE(0.0F < coldR && coldR < coldG && coldG < 1.0F) << level;
        EXPECT_LT(warmB, gains(1 - level)[2]) << level;
        EXPECT_LT(coldR, gains(level - 1)[0]) << level;
    }
}

TEST_F(ClosedLibrariesTest, UnlimitedErrorsWriteNothing) {
    EXPECT_THAT(gains(0, kUnlimitedNotConfigured), Each(kUntouched));
    EXPECT_EQ(setParams(0x1FFFFEA, 0xEDFDFF), kUnlimitedBadColor);
    EXPECT_EQ(setParams(0xFFFFEA, -1), kUnlimitedBadColor);
    EXPECT_THAT(gains(0, kUnlimitedNotConfigured), Each(kUntouched));

    ASSERT_EQ(setParams(0xFFFFEA, 0xEDFDFF), 0);
    for (const int level : {-101, 101, INT_MIN, INT_MAX})
        EXPECT_THAT(gains(level, kUnlimitedBadLevel), Each(kUntouched));
    EXPECT_EQ(setParams(-1, 0), kUnlimitedBadColor);
    EXPECT_LT(gains(-100)[2], 1.0F) << "the end points before are kept";
    EXPECT_FALSE(unlimitedGains({0xFFFFEA, 0x1000000}, 0));
}

TEST_F(ClosedLibrariesTest, EyeCareWithoutCoefficientsFollowsTheLocus) {
    ASSERT_EQ(setEyeCare(locus(), 6500, 2700), 0);
    EXPECT_THAT(matrix(0), ElementsAre(1, 0, 0, 0, 1, 0, 0, 0, 1));
    for (int level = 1; level <= 100; ++level) {
        const auto m = matrix(level);
        EXPECT_THAT(m, ElementsAre(1, 0, 0, 0, m[4], 0, 0, 0, m[8])) << level;
        EXPECT_TRUE(0.0F < m[8] && m[8] < m[4] && m[4] < 1.0F) << level;
        EXPECT_LT(m[8], matrix(level - 1)[8]) << level;
        EXPECT_LT(m[4], matrix(level - 1)[4]) << level;
    }
    // Linear sRGB at 2700 K is 1.929, 0.805, 0.193 and at 6500 K 1.043, 0.984, 1.035.
    EXPECT_NEAR(matrix(100)[4], 0.4422, 1e-3);
    EXPECT_NEAR(matrix(100)[8], 0.1008, 1e-3);
    EXPECT_NEAR(eyeCareTemperature({locus(), 6500, 2700}, 50), 3815.2, 0.1) << "half way in reciprocal temperature";
}

TEST_F(ClosedLibrariesTest, EyeCareSwitchesBlueOffBelowTheGamut) {
    ASSERT_EQ(setEyeCare(locus(), 6500, 1667), 0);
    EXPECT_EQ(matrix(100)[8], 0.0F);
    EXPECT_EQ(setEyeCare(locus(), 1800, 1667), kEyeCareBadTemperatures) << "nothing to be relative to";
    EXPECT_EQ(setEyeCare(locusBut(1.0), 1000, 30000), 0) << "temperatures have no part in coefficients";
}

TEST_F(ClosedLibrariesTest, EyeCareCoefficientsAreNineCubics) {
    std::vector<double> coefficients(kEyeCareCoefficients);
    for (size_t i = 0; i < coefficients.size(); ++i) coefficients[i] = static_cast<double>(i);
    ASSERT_EQ(setEyeCare(coefficients, 6500, 2700), 0);
    EXPECT_THAT(matrix(0), ElementsAre(0, 4, 8, 12, 16, 20, 24, 28, 32));
    EXPECT_THAT(matrix(100), ElementsAre(6, 22, 38, 54, 70, 86, 102, 118, 134));
    EXPECT_FLOAT_EQ(matrix(50)[1], 4 + 5 * 0.5F + 6 * 0.25F + 7 * 0.125F);
}

TEST_F(ClosedLibrariesTest, EyeCareErrorsWriteNothing) {
    EXPECT_THAT(matrix(0, kEyeCareNotConfigured), Each(kUntouched));
    const struct {
        const char* what;
        std::vector<double> coefficients;
        int32_t maxCCT, minCCT;
        int error;
    } kUnusable[] = {
        {"one too few", std::vector<double>(35, 1.0), 6500, 2700, kEyeCareBadCoefficients},
        {"one too many", std::vector<double>(37, 1.0), 6500, 2700, kEyeCareBadCoefficients},
        {"infinite", locusBut(-kInfinity), 6500, 2700, kEyeCareBadCoefficients},
        {"not a number", locusBut(std::nan("")), 6500, 2700, kEyeCareBadCoefficients},
        {"beyond float", locusBut(-1e39), 6500, 2700, kEyeCareBadCoefficients},
        {"too warm", locus(), 6500, 1666, kEyeCareBadTemperatures},
        {"too cold", locus(), 25001, 2700, kEyeCareBadTemperatures},
        {"the wrong way round", locus(), 2700, 6500, kEyeCareBadTemperatures},
    };
    for (const auto& [what, coefficients, maxCCT, minCCT, error] : kUnusable) {
        EXPECT_EQ(setEyeCare(coefficients, maxCCT, minCCT), error) << what;
        EXPECT_THAT(matrix(0, kEyeCareNotConfigured), Each(kUntouched));
    }
    ASSERT_EQ(setEyeCare(locus(), 6500, 2700), 0);
    for (const int level : {-1, 101, INT_MIN, INT_MAX}) EXPECT_THAT(matrix(level, kEyeCareBadLevel), Each(kUntouched));
    EXPECT_FALSE(eyeCareMatrix({{}, 6500, 2700}, 0));
}

class WhitePointTest : public testing::Test {
protected:
    android::WhitePointCalibrateParam panel{0.28F, 0.30F, {0.66F, 0.295F, 0.15F, 0.334F, 0.656F, 0.055F}, 1, 1, 1};

    int calibrate() { return android::DisplayPostProcessingAlgorithm().WhitePointCalibrate(&panel); }
    std::array<float, 3> gains() const { return {panel.gainR, panel.gainG, panel.gainB}; }
};

TEST_F(WhitePointTest, TakesBlueFromABluePanelAndShowsD65) {
    EXPECT_EQ(calibrate(), 0);
    EXPECT_EQ(panel.gainR, 1.0F);
    EXPECT_TRUE(0.0F < panel.gainB && panel.gainB < panel.gainG && panel.gainG < 1.0F);

    const Mat3 toXyz = *rgbToXyz({{0.66, 0.334}, {0.295, 0.656}, {0.15, 0.055}}, {0.28, 0.30});
    const auto [x, y, z] = multiply(toXyz, Vec3{panel.gainR, panel.gainG, panel.gainB});
    EXPECT_NEAR(x / (x + y + z), kD65.x, 1e-6);
    EXPECT_NEAR(y / (x + y + z), kD65.y, 1e-6);
}

TEST_F(WhitePointTest, LeavesTheGainsOfAnImpossiblePanelAlone) {
    const android::WhitePointCalibrateParam kImpossible[] = {
        {0.7F, 0.2F, {0.66F, 0.295F, 0.15F, 0.334F, 0.656F, 0.055F}, 0.5F, 0.5F, 0.5F},  // white outside
        {0.28F, 0.30F, {}, 0.5F, 0.5F, 0.5F},                                            // no primaries
        {0.20F, 0.25F, {0.25F, 0.2F, 0.15F, 0.3F, 0.4F, 0.06F}, 0.5F, 0.5F, 0.5F},       // D65 outside
    };
    for (const auto& impossible : kImpossible) {
        panel = impossible;
        EXPECT_EQ(calibrate(), kWhitePointImpossible) << panel.whiteX << ", " << panel.whiteY;
        EXPECT_THAT(gains(), Each(0.5F)) << panel.whiteX << ", " << panel.whiteY;
    }
    EXPECT_FALSE(whitePointGains(kSrgbPrimaries, {0.47 - 1e-14, 0.465})) << "white all but on the edge";
}

}  // namespace
}  // namespace simulator
