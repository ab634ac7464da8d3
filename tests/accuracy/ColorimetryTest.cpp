// SPDX-License-Identifier: Apache-2.0
// Colour differences, near-white chromaticities, gamuts and the chart, against published values.
#include "tools/accuracy/Colorimetry.h"

#include <gmock/gmock.h>

#include <cmath>

#include "tools/accuracy/ColorChecker.h"
#include "tools/accuracy/Gamut.h"

namespace simulator {
namespace {

constexpr Vec3 kWhite = {95.047, 100, 108.883};

// CIE 15, 8.2.1.1 solved for X, Y, Z.
Vec3 xyzOfLab(const Vec3& lab) {
    const double f = (lab[0] + 16) / 116;
    const auto cube = [](double t) { return t > 6.0 / 29 ? t * t * t : 108.0 / 841 * (t - 4.0 / 29); };
    return {kWhite[0] * cube(f + lab[1] / 500), kWhite[1] * cube(f), kWhite[2] * cube(f - lab[2] / 200)};
}

// Sharma, Wu and Dalal, "The CIEDE2000 color-difference formula: implementation notes, supplementary test data, and
// mathematical observations", Color Res. Appl. 30 (2005), 21-30, table 1.
TEST(DeltaE2000, MeetsThePublishedPairs) {
    const std::array<double, 7> kPairs[] = {{50, 2.6772, -79.7751, 50, 0, -82.7485, 2.0425},
                                            {50, 3.1571, -77.2803, 50, 0, -82.7485, 2.8615},
                                            {50, 2.8361, -74.0200, 50, 0, -82.7485, 3.4412},
                                            {50, -1.3802, -84.2814, 50, 0, -82.7485, 1.0000},
                                            {50, -1.1848, -84.8006, 50, 0, -82.7485, 1.0000},
                                            {50, -0.9009, -85.5211, 50, 0, -82.7485, 1.0000},
                                            {50, 0, 0, 50, -1, 2, 2.3669},
                                            {50, -1, 2, 50, 0, 0, 2.3669},
                                            {50, 2.49, -0.001, 50, -2.49, 0.0009, 7.1792},
                                            {50, 2.49, -0.001, 50, -2.49, 0.0010, 7.1792},
                                            {50, 2.49, -0.001, 50, -2.49, 0.0011, 7.2195},
                                            {50, 2.49, -0.001, 50, -2.49, 0.0012, 7.2195},
                                            {50, -0.001, 2.49, 50, 0.0009, -2.49, 4.8045},
                                            {50, -0.001, 2.49, 50, 0.0010, -2.49, 4.8045},
                                            {50, -0.001, 2.49, 50, 0.0011, -2.49, 4.7461},
                                            {50, 2.5, 0, 50, 0, -2.5, 4.3065},
                                            {50, 2.5, 0, 73, 25, -18, 27.1492},
                                            {50, 2.5, 0, 61, -5, 29, 22.8977},
                                            {50, 2.5, 0, 56, -27, -3, 31.9030},
                                            {50, 2.5, 0, 58, 24, 15, 19.4535},
                                            {50, 2.5, 0, 50, 3.1736, 0.5854, 1.0000},
                                            {50, 2.5, 0, 50, 3.2972, 0, 1.0000},
                                            {50, 2.5, 0, 50, 1.8634, 0.5757, 1.0000},
                                            {50, 2.5, 0, 50, 3.2592, 0.3350, 1.0000},
                                            {60.2574, -34.0099, 36.2677, 60.4626, -34.1751, 39.4387, 1.2644},
                                            {63.0109, -31.0961, -5.8663, 62.8187, -29.7946, -4.0864, 1.2630},
                                            {61.2901, 3.7196, -5.3901, 61.4292, 2.2480, -4.9620, 1.8731},
                                            {35.0831, -44.1164, 3.7933, 35.0232, -40.0716, 1.5901, 1.8645},
                                            {22.7233, 20.0904, -46.6940, 23.0331, 14.9730, -42.5619, 2.0373},
                                            {36.4612, 47.8580, 18.3852, 36.2715, 50.5065, 21.2231, 1.4146},
                                            {90.8027, -2.0831, 1.4410, 91.1528, -1.6435, 0.0447, 1.4441},
                                            {90.9257, -0.5406, -0.9208, 88.6381, -0.8985, -0.7239, 1.5381},
                                            {6.7747, -0.2908, -2.4247, 5.8714, -0.0985, -2.2286, 0.6377},
                                            {2.0776, 0.0795, -1.1350, 0.9033, -0.0636, -0.5514, 0.9082}};
    for (const auto& [l1, a1, b1, l2, a2, b2, expected] : kPairs) {
        const Vec3 first = xyzOfLab({l1, a1, b1});
        const Vec3 second = xyzOfLab({l2, a2, b2});
        EXPECT_NEAR(deltaE2000(first, second, kWhite), expected, 5e-5) << l1 << " " << a1 << " " << b1;
        EXPECT_NEAR(deltaC(first, second, kWhite), std::hypot(a1 - a2, b1 - b2), 1e-9);
    }
}

// CIE 15
TEST(ColorTemperature, MeetsThePublishedIlluminantsAndEndsFarFromTheLocus) {
    const std::array<double, 4> kIlluminants[] = {{0.44757, 0.40745, 2856, 0.0000},  // A
                                                  {0.34567, 0.35850, 5003, 0.0032},  // D50
                                                  {0.31272, 0.32903, 6504, 0.0032},  // D65
                                                  {0.29902, 0.31485, 7504, 0.0031},  // D75
                                                  {0.28063, 0.28828, 10000, 0.0000}};
    for (const auto& [x, y, kelvin, duv] : kIlluminants) {
        EXPECT_NEAR(correlatedColorTemperature({x, y}).value(), kelvin, 4);
        EXPECT_NEAR(duvOf({x, y}), duv, 1e-4) << kelvin;
    }
    EXPECT_LT(duvOf({0.35, 0.30}), -0.02) << "pink";
    EXPECT_GT(duvOf({0.35, 0.42}), 0.02) << "green";
    const auto duvAt = [](double v) { return duvOf({0.66 / (4.44 - 8 * v), 2 * v / (4.44 - 8 * v)}); };  // u = 0.22
    EXPECT_NEAR(duvAt(0.24 - 1e-6), duvAt(0.24 + 1e-6), 1e-5);
    EXPECT_FALSE(correlatedColorTemperature({0.30, 0.60}));
    EXPECT_FALSE(correlatedColorTemperature({0.15, 0.06}));
}

TEST(Gamut, CoverageIsThatOfTheIntersection) {
    const Triangle unit = {{{0, 0}, {1, 0}, {0, 1}}};
    EXPECT_NEAR(coverage({{{-1, 3}, {3, -1}, {-1, -1}}}, unit), 1, 1e-12) << "around it, the other way round";
    EXPECT_NEAR(coverage({{{0.5, 0}, {1.5, 0}, {0.5, 1}}}, unit), 0.25, 1e-12) << "moved to the right";
    EXPECT_NEAR(coverage({{{0.5, -0.1}, {0.5, 0.6}, {-0.2, 0.6}}}, unit), 0.43, 1e-12) << "a hexagon in common";
    EXPECT_NEAR(coverage({{{2, 0}, {3, 0}, {2, 1}}}, unit), 0, 1e-12) << "apart";
}

// Codes computed by another colour management system with a profile of sRGB, relative colorimetric.
TEST(ColorChecker, MeetsTheCodesOfSrgbAndIsClippedOnlyWhereItEnds) {
    const auto chart = colorChecker(makeTarget(kSrgbPrimaries).value());
    const Vec3 kCodes[] = {{115.5, 80.9, 67.4},   {198.6, 147.2, 128.7}, {90.6, 122.4, 155.8},  {89.7, 107.6, 64.4},
                           {129.6, 128.0, 176.1}, {92.4, 189.9, 172.0},  {224.3, 123.7, 46.7},  {67.9, 91.2, 170.2},
                           {198.3, 81.9, 97.1},   {93.6, 58.0, 105.6},   {158.7, 189.0, 62.8},  {230.4, 161.6, 39.3},
                           {35.4, 63.3, 147.1},   {66.9, 148.9, 74.1},   {179.9, 48.7, 57.0},   {238.3, 198.4, 19.7},
                           {193.0, 84.0, 150.6},  {0.0, 136.2, 169.7},   {244.9, 245.2, 242.7}, {200.3, 202.2, 202.4},
                           {160.7, 162.8, 163.3}, {120.7, 121.2, 121.6}, {82.4, 84.1, 85.8},    {48.7, 49.4, 50.7}};
    for (size_t i = 0; i < chart.size(); ++i) {
        Vec3 codes;
        for (size_t k = 0; k < 3; ++k) codes[k] = 255 * linearToSrgb(std::pow(chart[i].rgb[k], kTargetExponent));
        EXPECT_THAT(codes, ::testing::Pointwise(::testing::DoubleNear(0.1), kCodes[i])) << chart[i].name;
    }
    for (const ChartPatch& patch : chart) EXPECT_EQ(patch.isClipped, patch.name == "cyan") << patch.name;
    for (const ChartPatch& patch : colorChecker(makeTarget(kDisplayP3Primaries).value())) EXPECT_FALSE(patch.isClipped);
}

}  // namespace
}  // namespace simulator
