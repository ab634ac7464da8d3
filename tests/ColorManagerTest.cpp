#include "color/ColorManager.h"

#include <cmath>
#include <random>

#include "tests/ServiceTest.h"

namespace vendor::kov::hardware::display_control::V1_0::implementation {

namespace {

using Matrix = TMat33<float>;
using ::testing::ElementsAre;

Matrix matrix(std::initializer_list<float> elements) {
    Matrix result;
    std::copy(elements.begin(), elements.end(), result.data());
    return result;
}

Matrix diagonal(float r, float g, float b) {
    return matrix({r, 0, 0, 0, g, 0, 0, 0, b});
}

std::string textOf(const Matrix& m) {
    return fakes::text(m.data(), Matrix::kSize);
}

// One rounding per step, whatever the compiler would like to do with it.
Matrix productStepByStep(const Matrix& a, const Matrix& b) {
    Matrix result;
    for (size_t element = 0; element < 9; ++element) {
        volatile float sum = 0;
        for (size_t k = 0; k < 3; ++k) {
            volatile float term = a[element / 3 * 3 + k];
            term = term * b[3 * k + element % 3];
            sum = sum + term;
        }
        result[element] = sum;
    }
    return result;
}

float largestStepByStep(const Matrix& m) {
    volatile float best = 0;
    for (const int corner : {0b111, 0b110, 0b101, 0b011, 0b100, 0b010, 0b001}) {
        for (size_t row = 0; row < 3; ++row) {
            volatile float out = 0;
            for (size_t column = 0; column < 3; ++column) {
                volatile float term = m[3 * row + column];
                term = term * static_cast<float>(corner >> (2 - column) & 1);
                out = out + term;
            }
            if (!(best > out)) best = out;
        }
    }
    return best;
}

Matrix normalisedStepByStep(Matrix m) {
    const float best = largestStepByStep(m);
    const volatile double threshold = 1e-6;
    if (static_cast<double>(best) > threshold) {
        for (size_t i = 0; i < 9; ++i) m[i] = m[i] / best;
    }
    return m;
}

std::string referenceFinal(const ColorManager& colors) {
    const Matrix corrected = productStepByStep(colors.wpcCtm, colors.ccmCtm);
    return textOf(
        normalisedStepByStep(productStepByStep(colors.eyeCareCtm, productStepByStep(colors.unlimitedCtm, corrected))));
}

ColorManager randomColors(std::mt19937& random) {
    std::uniform_real_distribution<float> element(-0.5F, 1.5F);
    ColorManager colors;
    for (Matrix* m : {&colors.wpcCtm, &colors.ccmCtm, &colors.unlimitedCtm, &colors.eyeCareCtm}) {
        for (size_t i = 0; i < Matrix::kSize; ++i) (*m)[i] = element(random);
    }
    return colors;
}

}  // namespace

// Every place of the four matrices takes every odd value once, among plain values and among random ones.
TEST(FinalCtm, HasTheBitsOfItsDefinition) {
    std::mt19937 random(1);
    for (const float odd : {0.5F, -0.0F, HUGE_VALF, -HUGE_VALF, NAN, 1e-45F, 3e38F, -3e38F}) {
        for (size_t sample = 0; sample < 8 * Matrix::kSize; ++sample) {
            ColorManager colors = sample % 2 == 0 ? ColorManager() : randomColors(random);
            const size_t place = sample / 2;
            Matrix* const matrices[] = {&colors.wpcCtm, &colors.ccmCtm, &colors.unlimitedCtm, &colors.eyeCareCtm};
            (*matrices[place / 9])[place % 9] = odd;
            ASSERT_EQ(textOf(colors.finalCtm()), referenceFinal(colors)) << odd << " in place " << place;
        }
    }
}

// Sums that cancel, that are zeros of both signs, and that leave float's range.
TEST(FinalCtm, HasTheBitsOfItsDefinitionForAwkwardElements) {
    const float kElements[] = {0,     -0.0F,  1,      -1,    2,      -2,        0.1F,       -0.1F, 1e-45F,
                               1e30F, -1e30F, 1e-23F, 3e38F, -3e38F, HUGE_VALF, -HUGE_VALF, NAN};
    std::mt19937 random(1);
    for (size_t sample = 0; sample < 20'000; ++sample) {
        std::uniform_int_distribution<size_t> element(0, sample % std::size(kElements));
        ColorManager colors;
        for (Matrix* m : {&colors.wpcCtm, &colors.ccmCtm, &colors.unlimitedCtm, &colors.eyeCareCtm}) {
            for (size_t i = 0; i < Matrix::kSize; ++i) (*m)[i] = kElements[element(random)];
        }
        ASSERT_EQ(textOf(colors.finalCtm()), referenceFinal(colors)) << textOf(colors.composedCtm());
        const float largest[] = {ColorManager::maxRgb(colors.ccmCtm), largestStepByStep(colors.ccmCtm)};
        ASSERT_EQ(fakes::text(&largest[0], 1), fakes::text(&largest[1], 1)) << textOf(colors.ccmCtm);
    }
}

TEST(FinalCtm, IsNormalisedAboveTheThresholdOnly) {
    const Matrix correction = matrix({1.2F, -0.1F, -0.1F, -0.1F, 1.2F, -0.1F, -0.1F, -0.1F, 1.2F});
    constexpr float kOff = -0.1F / 1.2F;
    const float threshold = 1e-6F;  // as a double a little less than 1e-6
    const struct {
        const char* name;
        Matrix ColorManager::*which;
        Matrix given, expected;
    } kCases[] = {
        {"nothing set", &ColorManager::wpcCtm, {}, {}},
        {"scaled up", &ColorManager::unlimitedCtm, diagonal(0.9F, 0.8F, 0.7F), diagonal(1, 0.8F / 0.9F, 0.7F / 0.9F)},
        {"one channel", &ColorManager::ccmCtm, correction, matrix({1, kOff, kOff, kOff, 1, kOff, kOff, kOff, 1})},
        {"all black", &ColorManager::eyeCareCtm, diagonal(0, 0, 0), diagonal(0, 0, 0)},
        {"negative only", &ColorManager::wpcCtm, diagonal(-1, -2, -3), diagonal(-1, -2, -3)},
        {"at the threshold", &ColorManager::wpcCtm, diagonal(threshold, 0, 0), diagonal(threshold, 0, 0)},
        {"above", &ColorManager::wpcCtm, diagonal(std::nextafter(threshold, 1.0F), 0, 0), diagonal(1, 0, 0)},
        {"sums start at 0", &ColorManager::eyeCareCtm, matrix({-0.0F, -0.0F, -0.0F, 0, 1, 0, 0, 0, 1}),
         diagonal(0, 1, 1)},
    };
    for (const auto& c : kCases) {
        ColorManager colors;
        colors.*c.which = c.given;
        EXPECT_EQ(textOf(colors.finalCtm()), textOf(c.expected)) << c.name;
    }
}

TEST(FinalCtm, CorrectsFirstAndMeetsEyeCareLast) {
    ColorManager colors;
    colors.ccmCtm = matrix({0, 1, 0, 1, 0, 0, 0, 0, 1});        // red and green change places
    colors.wpcCtm = diagonal(1, 0.5F, 1);                       // green halved
    colors.unlimitedCtm = matrix({0, 0, 1, 0, 1, 0, 1, 0, 0});  // red and blue change places
    colors.eyeCareCtm = diagonal(1, 1, 0.25F);                  // blue quartered
    EXPECT_EQ(textOf(colors.finalCtm()), "[0 0 1 0.5 0 0 0 0.25 0]");
}

TEST(MaxRgb, IsTheLargestOutputOfTheCubesCorners) {
    const std::pair<Matrix, float> kCases[] = {
        {{}, 1},
        {matrix({1, 2, 3, 4, 5, 6, 7, 8, 9}), 24},
        {matrix({1, 2, -4, 0, 0, 0, 0, 0, 0}), 3},
        {matrix({-1, -1, -1, -1, 5, -1, -1, -1, -1}), 5},
        {diagonal(-1, -1, -1), 0},
        {diagonal(1, 1, NAN), NAN},
        {diagonal(NAN, 1, 0.5F), 0.5F},
    };
    for (const auto& [m, expected] : kCases) {
        const float largest = ColorManager::maxRgb(m);
        EXPECT_EQ(fakes::text(&largest, 1), fakes::text(&expected, 1)) << textOf(m);
    }
}

TEST(ScaleCcm, NormalisesInPlaceAboveTheThresholdOnly) {
    Matrix m = diagonal(4, 2, -1);
    EXPECT_EQ(ColorManager::scaleCCM(m), 0);
    EXPECT_EQ(textOf(m), textOf(diagonal(1, 0.5F, -0.25F)));
    m = diagonal(1e-7F, 0, 0);
    EXPECT_EQ(ColorManager::scaleCCM(m), 0);
    EXPECT_EQ(textOf(m), textOf(diagonal(1e-7F, 0, 0)));
}

class ColorManagerTest : public PhoneTest {};

TEST_F(ColorManagerTest, InitConfiguresEyeCareThenTheEndPoints) {
    const int32_t endPoints[] = {0x00C0FFEE, 0xEDFDFF};
    double eyeCare[ColorManager::kEyeCareRun] = {6500.9, 2700.2};
    for (size_t i = 2; i < ColorManager::kEyeCareRun; ++i) eyeCare[i] = static_cast<double>(i) / 8;

    EXPECT_EQ(ColorManager::init(endPoints, eyeCare), 0);
    EXPECT_THAT(happened(), ElementsAre("closed setEyeCareParamsOled(6500, 2700)", "log D init: m:6500 m:2700",
                                        "closed setParams(C0FFEE, EDFDFF)", "log D init: w:00C0FFEE c:00EDFDFF"));
    EXPECT_THAT(fakes::closedLibraries().eyeCareCoeffs, testing::ElementsAreArray(eyeCare + 2, 36));

    EXPECT_EQ(ColorManager::init(nullptr, nullptr), 0);
    EXPECT_THAT(happened(), ElementsAre("log E init: eye care init error", "closed setParams(FFFFEA, EDFDFF)",
                                        "log E init: Unlimited init error"));
}

TEST_F(ColorManagerTest, EyeCareRangeIsTruncatedIntoAnInt) {
    const std::pair<double, const char*> kCases[] = {
        {-2700.9, "-2700"}, {1e300, "2147483647"}, {-1e300, "-2147483648"}, {HUGE_VAL, "2147483647"}, {NAN, "0"}};
    for (const auto& [given, taken] : kCases) {
        const double eyeCare[ColorManager::kEyeCareRun] = {given, 1.0};
        ColorManager::init(nullptr, eyeCare);
        EXPECT_THAT(happened(), testing::Contains(std::string("log D init: m:") + taken + " m:1")) << given;
    }
}

TEST_F(ColorManagerTest, UnlimitedGainsGoOntoTheDiagonal) {
    ColorManager colors;
    fakes::closedLibraries().gains = {0.5F, 0.25F, 0.125F};
    EXPECT_EQ(colors.setUnlimitedCT(7), 0);
    EXPECT_EQ(textOf(colors.unlimitedCtm), textOf(diagonal(0.5F, 0.25F, 0.125F)));

    fakes::closedLibraries().error = -3;
    fakes::closedLibraries().gains = {0.5F};
    EXPECT_EQ(colors.setUnlimitedCT(8), 0);
    EXPECT_EQ(textOf(colors.unlimitedCtm), textOf(diagonal(0.5F, 1, 1))) << "what was written is used";

    fakes::closedLibraries().gains = {};
    EXPECT_EQ(colors.setUnlimitedCT(-7), 0);
    EXPECT_EQ(textOf(colors.unlimitedCtm), "I");
    EXPECT_EQ(colors.unlimitedCT, -7);
    EXPECT_THAT(
        happened(),
        ElementsAre("closed getUnlimitedCTParams(7, [1 1 1])", "log D setUnlimitedCT: 7  0.500000 0.250000 0.125000",
                    "closed getUnlimitedCTParams(8, [1 1 1])", "log E setUnlimitedCT: error -3",
                    "log D setUnlimitedCT: 8  0.500000 1.000000 1.000000", "closed getUnlimitedCTParams(-7, [1 1 1])",
                    "log E setUnlimitedCT: error -3", "log D setUnlimitedCT: -7  1.000000 1.000000 1.000000"));
}

TEST_F(ColorManagerTest, EyeCareMatrixIsTakenWhole) {
    ColorManager colors;
    fakes::closedLibraries().coefficients = {1, 2, 3, 4, 5, 6, 7, 8, 9};
    EXPECT_EQ(colors.setEyeCareCT(7), 0);
    EXPECT_THAT(happened(), ElementsAre("closed getEyeCareCoeffOled(7, I)", "log D setEyeCareCT: v:7",
                                        "log D setEyeCareCT: 1.000000 2.000000 3.000000",
                                        "log D setEyeCareCT: 4.000000 5.000000 6.000000",
                                        "log D setEyeCareCT: 7.000000 8.000000 9.000000"));
    EXPECT_EQ(textOf(colors.eyeCareCtm), "[1 2 3 4 5 6 7 8 9]");

    fakes::closedLibraries().error = -1;
    fakes::closedLibraries().coefficients = {0.5F, 0.25F};
    EXPECT_EQ(colors.setEyeCareCT(8), 0);
    EXPECT_THAT(happened(), testing::Contains("log E setEyeCareCT: error -1"));
    EXPECT_EQ(textOf(colors.eyeCareCtm), "[0.5 0.25 0 0 1 0 0 0 1]") << "what was not written is the identity's";
    EXPECT_EQ(colors.eyeCareCT, 8);
}

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
