// SPDX-License-Identifier: Apache-2.0
#include "simulator/Colorimetry.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>

namespace simulator {
namespace {

using ::testing::DoubleNear;
using ::testing::Pointwise;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr Mat3 kIdentity = {1, 0, 0, 0, 1, 0, 0, 0, 1};

TEST(TransferFunction, HasThePublishedValuesAndGoesBackAndForth) {
    EXPECT_EQ(srgbToLinear(0.0), 0.0);
    EXPECT_DOUBLE_EQ(srgbToLinear(1.0), 1.0);
    EXPECT_NEAR(srgbToLinear(0.5), 0.21404, 1e-5);
    EXPECT_NEAR(srgbToLinear(10 / 255.0), 10 / 255.0 / 12.92, 1e-15) << "the straight piece near black";
    for (int code = 0; code < 256; ++code) EXPECT_NEAR(linearToSrgb(srgbToLinear(code / 255.0)), code / 255.0, 1e-6);
}

TEST(PlanckianLocus, MeetsPublishedChromaticities) {
    const struct {
        double kelvin;
        Chromaticity expected;
    } kPoints[] = {
        {2000, {0.5267, 0.4133}}, {2700, {0.4599, 0.4106}},  {2856, {0.4476, 0.4074}},  // the last: illuminant A
        {6500, {0.3135, 0.3237}}, {10000, {0.2806, 0.2883}},
    };
    for (const auto& [kelvin, expected] : kPoints) {
        const auto [x, y] = planckianLocus(kelvin).value();
        EXPECT_NEAR(x, expected.x, 0.001) << kelvin;
        EXPECT_NEAR(y, expected.y, 0.001) << kelvin;
    }
}

TEST(PlanckianLocus, HasNoGapBetweenItsPiecesAndEndsWhereItIsUnknown) {
    for (const double joint : {2222.0, 4000.0}) {
        EXPECT_NEAR(planckianLocus(joint)->x, planckianLocus(joint + 0.01)->x, 2e-4) << joint;
        EXPECT_NEAR(planckianLocus(joint)->y, planckianLocus(joint + 0.01)->y, 2e-4) << joint;
    }
    EXPECT_TRUE(planckianLocus(1667) && planckianLocus(25000));
    EXPECT_FALSE(planckianLocus(1666.9) || planckianLocus(25000.1) || planckianLocus(kNaN));
}

TEST(Matrix, InverseUndoesAndRefusesTheSingular) {
    const Mat3 m = {2, -1, 0.5, 0.25, 3, 1, 7, 0, -4};
    EXPECT_THAT(multiply(m, *inverse(m)), Pointwise(DoubleNear(1e-14), kIdentity));
    EXPECT_EQ(multiply(m, Vec3{1, 10, 100}), (Vec3{42, 130.25, -393}));
    EXPECT_TRUE(inverse({1e-9, 0, 0, 0, 1e-9, 0, 0, 0, 1e-9})) << "small is not singular";
    EXPECT_FALSE(inverse({1, 2, 3, 4, 5, 6, 7, 8, 9}));
    EXPECT_FALSE(inverse({0.1, 0.2, 0.3, 0.3, 0.6, 0.9, 1, 0, 1})) << "singular but for rounding";
    EXPECT_FALSE(inverse({}));
    EXPECT_FALSE(inverse({kNaN, 0, 0, 0, 1, 0, 0, 0, 1}));
    EXPECT_FALSE(inverse({HUGE_VAL, 0, 0, 0, 1, 0, 0, 0, 1}));
}

TEST(RgbToXyz, GivesThePublishedMatrixOfSrgb) {
    const Mat3 kPublished = {0.4124, 0.3576, 0.1805, 0.2126, 0.7152, 0.0722, 0.0193, 0.1192, 0.9505};
    EXPECT_THAT(rgbToXyz(kSrgbPrimaries, kD65).value(), Pointwise(DoubleNear(5e-5), kPublished));
}

TEST(RgbToXyz, RefusesWhatNoDisplayCanBe) {
    const struct {
        const char* what;
        Primaries primaries;
        Chromaticity white;
    } kImpossible[] = {
        {"on one line", {{0.1, 0.1}, {0.3, 0.3}, {0.2, 0.2}}, {0.2, 0.2}},
        {"two alike", {{0.64, 0.33}, {0.64, 0.33}, {0.15, 0.06}}, kD65},
        {"white outside", kSrgbPrimaries, {0.1, 0.8}},
        {"white not a number", kSrgbPrimaries, {kNaN, 0.3}},
        {"y not positive", {{0.64, 0.33}, {0.30, 0.60}, {0.15, -0.06}}, {0.582, 0.508}},
        {"y infinite", {{0.64, 0.33}, {0.30, HUGE_VAL}, {0.15, 0.06}}, kD65},
    };
    for (const auto& [what, primaries, white] : kImpossible) EXPECT_FALSE(rgbToXyz(primaries, white)) << what;
}

}  // namespace
}  // namespace simulator
