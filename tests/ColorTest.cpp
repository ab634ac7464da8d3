// SPDX-License-Identifier: Apache-2.0
// Matrices and tables bit by bit, odder ones than a session has.
#include <cmath>
#include <cstring>
#include <limits>
#include <random>

#include "color/ColorManager.h"
#include "color/PowerTable.h"
#include "tests/PhoneTest.h"
#include "tests/model/Service.h"

namespace vendor::kov::hardware::display_control::V1_0::implementation {

namespace {

using Matrix = TMat33<float>;

// The elements of the matrices in effect are given by value, called for each of the 36 places.
template <typename Value>
ColorManager colorsOf(Value value) {
    ColorManager colors;
    Matrix* const matrices[] = {&colors.wpcCtm, &colors.ccmCtm, &colors.unlimitedCtm, &colors.eyeCareCtm};
    for (size_t place = 0; place < 4 * Matrix::kSize; ++place) {
        float& element = (*matrices[place / 9])[place % 9];
        element = value(place, element);
    }
    return colors;
}

std::string textOf(const Matrix& m) {
    return simulator::valueText(simulator::matrixOf(m.data()));
}

void expectDefinition(const ColorManager& colors) {
    const auto copy = [](const Matrix& m) { return simulator::matrixOf(m.data()); };
    const model::Display display = {copy(colors.wpcCtm), copy(colors.ccmCtm), copy(colors.unlimitedCtm),
                                    copy(colors.eyeCareCtm)};
    EXPECT_EQ(textOf(colors.finalCtm()), simulator::valueText(model::finalMatrix(display)));
    const float largest = model::largestOutput(display.colorCorrection);
    EXPECT_EQ(simulator::floatText(ColorManager::maxRgb(colors.ccmCtm)), simulator::floatText(largest));
    Matrix scaled = colors.ccmCtm;
    EXPECT_EQ(ColorManager::scaleCCM(scaled), 0);
    Matrix expected = colors.ccmCtm;
    for (size_t i = 0; i<Matrix::kSize&& static_cast<double>(largest)> 1e-6; ++i) expected[i] /= largest;
    EXPECT_EQ(textOf(scaled), textOf(expected));
}

// The first entry whose bits differ from pow's; the table's size if there is none. No entry behind it is written.
size_t firstDifference(float exponent) {
    std::vector<float> table(kPowerTable + 1, 7);
    fillPowerTable(table.data(), exponent);
    if (table.back() != 7) return SIZE_MAX;
    const auto expected = model::powerTable(exponent);
    size_t i = 0;
    while (i < kPowerTable && memcmp(&table[i], &(*expected)[i], sizeof(float)) == 0) ++i;
    return i;
}

}  // namespace

// Every place of the four matrices takes every odd value once, among plain values and among random ones.
TEST(FinalCtm, HasTheBitsOfItsDefinition) {
    std::mt19937 random(1);
    std::uniform_real_distribution<float> anyValue(-0.5F, 1.5F);
    for (const float odd : {0.5F, -0.0F, HUGE_VALF, -HUGE_VALF, NAN, 1e-45F, 3e38F, -3e38F}) {
        for (size_t sample = 0; sample < 8 * Matrix::kSize && !testing::Test::HasFailure(); ++sample) {
            expectDefinition(colorsOf([&](size_t place, float plain) {
                return place == sample / 2 ? odd : sample % 2 == 0 ? plain : anyValue(random);
            }));
        }
    }
}

// Sums that cancel, that are zeros of both signs, that are at the threshold, and that leave float's range.
TEST(FinalCtm, HasTheBitsOfItsDefinitionForAwkwardElements) {
    const float above = std::nextafter(1e-6F, 1.0F);
    const float kElements[] = {0,      -0.0F, 1e-6F, above, -1e-6F, 1,      -1,    2,      -2,        0.1F,       -0.1F,
                               1e-45F, 0.5F,  -0.5F, 1e30F, -1e30F, 1e-23F, 3e38F, -3e38F, HUGE_VALF, -HUGE_VALF, NAN};
    std::mt19937 random(1);
    for (size_t sample = 0; sample < 20'000 && !testing::Test::HasFailure(); ++sample) {
        std::uniform_int_distribution<size_t> choice(0, sample % std::size(kElements));
        expectDefinition(colorsOf([&](size_t, float) { return kElements[choice(random)]; }));
    }
}

TEST_F(PhoneTest, ColorManagerReturns0WhateverTheLibrariesReturn) {
    for (size_t i = 0; i < simulator::kClosedFunctions.size(); ++i)
        phone.closed().fail(static_cast<simulator::ClosedFunction>(i), -7);
    ColorManager colors;
    EXPECT_EQ(ColorManager::init(nullptr, nullptr), 0);
    EXPECT_EQ(colors.setUnlimitedCT(7), 0);
    EXPECT_EQ(colors.setEyeCareCT(7), 0);
}

TEST(PowerTable, HasTheBitsOfPow) {
    using Limits = std::numeric_limits<float>;
    std::vector<float> exponents = {Limits::infinity(),
                                    Limits::quiet_NaN(),
                                    Limits::max(),
                                    Limits::denorm_min(),
                                    1 / 2.2F,
                                    1 / 2.4F,
                                    1e30F,
                                    16.000002F,
                                    std::sqrt(2.F),
                                    3e-8F,
                                    1e-7F};
    // Of each, a product of powers is exactly between two floats.
    exponents.insert(exponents.end(),
                     {-0x1.9fb6e6p+3F, -0x1.61f9e4p+3F, 0x1.932e28p+3F,  0x1.6e299cp+3F,  0x1.a7f49p+1F,
                      -0x1.8b6d8cp+3F, -0x1.b6b2c2p+3F, -0x1.18f634p+3F, -0x1.e1107p+3F,  0x1.d7cc38p+3F,
                      0x1.786p-4F,     -0x1.d065ap+2F,  -0x1.502658p+2F, -0x1.46a06cp+3F, -0x1.466bc6p+3F,
                      -0x1.83bfa8p+1F, -0x1.f0417cp+3F, -0x1.9a5c34p+3F, 0x1.f2a0ecp+3F,  -0x1.244d1cp+2F});
    for (int halves = 0; halves <= 80; ++halves) exponents.push_back(static_cast<float>(halves) / 2);
    for (int tenths = 1; tenths < 50; ++tenths) exponents.push_back(static_cast<float>(tenths) / 10);
    std::mt19937 random(1);
    std::uniform_real_distribution<float> usual(-17, 17);
    std::uniform_real_distribution<float> magnitude(-40, 8);
    for (int i = 0; i < 5'000; ++i) exponents.insert(exponents.end(), {usual(random), std::exp2(magnitude(random))});
    for (const float exponent : exponents) {
        ASSERT_EQ(firstDifference(exponent), kPowerTable) << exponent;
        ASSERT_EQ(firstDifference(-exponent), kPowerTable) << -exponent;
    }
}

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
