// SPDX-License-Identifier: Apache-2.0
// The final matrix and its normalisation, bit by bit, by themselves: a session has no matrices as odd as these.
#include "color/ColorManager.h"

#include <cmath>
#include <random>

#include "tests/PhoneTest.h"
#include "tests/model/Service.h"

namespace vendor::kov::hardware::display_control::V1_0::implementation {

namespace {

using Matrix = TMat33<float>;

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

}  // namespace

// Every place of the four matrices takes every odd value once, among plain values and among random ones.
TEST(FinalCtm, HasTheBitsOfItsDefinition) {
    std::mt19937 random(1);
    std::uniform_real_distribution<float> element(-0.5F, 1.5F);
    for (const float odd : {0.5F, -0.0F, HUGE_VALF, -HUGE_VALF, NAN, 1e-45F, 3e38F, -3e38F}) {
        for (size_t sample = 0; sample < 8 * Matrix::kSize && !testing::Test::HasFailure(); ++sample) {
            ColorManager colors;
            Matrix* const matrices[] = {&colors.wpcCtm, &colors.ccmCtm, &colors.unlimitedCtm, &colors.eyeCareCtm};
            for (size_t i = 0; i < 4 * Matrix::kSize && sample % 2 == 1; ++i)
                (*matrices[i / 9])[i % 9] = element(random);
            const size_t place = sample / 2;
            (*matrices[place / 9])[place % 9] = odd;
            expectDefinition(colors);
        }
    }
}

// Sums that cancel, that are zeros of both signs, that are at the threshold, and that leave float's range.
TEST(FinalCtm, HasTheBitsOfItsDefinitionForAwkwardElements) {
    const float kElements[] = {0,          -0.0F, 1e-6F,  std::nextafter(1e-6F, 1.0F),
                               -1e-6F,     1,     -1,     2,
                               -2,         0.1F,  -0.1F,  1e-45F,
                               0.5F,       -0.5F, 1e30F,  -1e30F,
                               1e-23F,     3e38F, -3e38F, HUGE_VALF,
                               -HUGE_VALF, NAN};
    std::mt19937 random(1);
    for (size_t sample = 0; sample < 20'000 && !testing::Test::HasFailure(); ++sample) {
        std::uniform_int_distribution<size_t> element(0, sample % std::size(kElements));
        ColorManager colors;
        Matrix* const matrices[] = {&colors.wpcCtm, &colors.ccmCtm, &colors.unlimitedCtm, &colors.eyeCareCtm};
        for (size_t i = 0; i < 4 * Matrix::kSize; ++i) (*matrices[i / 9])[i % 9] = kElements[element(random)];
        expectDefinition(colors);
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

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
