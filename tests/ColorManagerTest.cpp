#include "color/ColorManager.h"

#include <cmath>
#include <limits>
#include <random>

#include "tests/ServiceTest.h"

namespace vendor::kov::hardware::display_control::V1_0::implementation {

namespace {

using Matrix = TMat33<float>;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr float kInfinity = std::numeric_limits<float>::infinity();

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

Matrix normalisedStepByStep(Matrix m) {
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

TEST(FinalCtm, HasTheBitsOfItsDefinition) {
    std::mt19937 random(1);
    for (int i = 0; i < 1000; ++i) {
        const ColorManager colors = randomColors(random);
        ASSERT_EQ(textOf(colors.finalCtm()), referenceFinal(colors)) << "sample " << i;
    }
}

TEST(FinalCtm, HasTheBitsOfItsDefinitionWithAnOddValueInAnyPlace) {
    std::mt19937 random(2);
    for (const float odd : {-0.0F, kInfinity, -kInfinity, NAN, 1e-45F, 3e38F, -3e38F}) {
        for (size_t place = 0; place < 4 * Matrix::kSize; ++place) {
            ColorManager colors = place % 2 == 0 ? ColorManager() : randomColors(random);
            Matrix* const matrices[] = {&colors.wpcCtm, &colors.ccmCtm, &colors.unlimitedCtm, &colors.eyeCareCtm};
            (*matrices[place / 9])[place % 9] = odd;
            ASSERT_EQ(textOf(colors.finalCtm()), referenceFinal(colors)) << odd << " in place " << place;
        }
    }
}

TEST(FinalCtm, IsTheChainDividedByItsLargestOutput) {
    const Matrix mixing = matrix({1, 0.5F, 0, 0.25F, 1, 0, 0, 0, 1});
    const Matrix correction = matrix({1.2F, -0.1F, -0.1F, -0.1F, 1.2F, -0.1F, -0.1F, -0.1F, 1.2F});
    constexpr float kThird = -0.1F / 1.2F;
    const Matrix none = diagonal(0, 0, 0);
    const float threshold = 1e-6F;  // as a double a little less than 1e-6
    const float aboveThreshold = std::nextafter(threshold, 1.0F);
    const struct {
        const char* name;
        Matrix white, correction, unlimited, eyeCare;
        Matrix expected;
    } kCases[] = {
        {"nothing set", {}, {}, {}, {}, {}},
        {"scaled up", {}, {}, diagonal(0.9F, 0.8F, 0.7F), {}, diagonal(1, 0.8F / 0.9F, 0.7F / 0.9F)},
        {"one channel alone is largest",
         {},
         correction,
         {},
         {},
         matrix({1, kThird, kThird, kThird, 1, kThird, kThird, kThird, 1})},
        {"all black", {}, {}, {}, none, none},
        {"negative only", diagonal(-1, -2, -3), {}, {}, {}, diagonal(-1, -2, -3)},
        {"correction before white point",
         diagonal(2, 1, 1),
         mixing,
         {},
         {},
         matrix({2.0F / 3, 1.0F / 3, 0, 0.25F / 3, 1.0F / 3, 0, 0, 0, 1.0F / 3})},
        {"white point before gains",
         mixing,
         {},
         diagonal(2, 1, 1),
         {},
         matrix({2.0F / 3, 1.0F / 3, 0, 0.25F / 3, 1.0F / 3, 0, 0, 0, 1.0F / 3})},
        {"gains before eye care",
         {},
         {},
         diagonal(2, 1, 1),
         mixing,
         matrix({2.0F / 2.5F, 0.5F / 2.5F, 0, 0.5F / 2.5F, 1 / 2.5F, 0, 0, 0, 1 / 2.5F})},
        {"at the threshold", {}, {}, diagonal(threshold, 0, 0), {}, diagonal(threshold, 0, 0)},
        {"above the threshold", {}, {}, diagonal(aboveThreshold, 0, 0), {}, diagonal(1, 0, 0)},
        {"far below", {}, {}, diagonal(1e-7F, 1e-7F, 1e-7F), {}, diagonal(1e-7F, 1e-7F, 1e-7F)},
        {"negative zeros become zeros", {}, diagonal(-0.0F, 1, 1), {}, {}, diagonal(0, 1, 1)},
    };
    for (const auto& c : kCases) {
        ColorManager colors;
        colors.wpcCtm = c.white;
        colors.ccmCtm = c.correction;
        colors.unlimitedCtm = c.unlimited;
        colors.eyeCareCtm = c.eyeCare;
        EXPECT_EQ(textOf(colors.finalCtm()), textOf(c.expected)) << c.name;
    }
}

TEST(MaxRgb, IsTheLargestOutputOfTheCubesCorners) {
    const struct {
        const char* name;
        Matrix m;
        float expected;
    } kCases[] = {
        {"identity", {}, 1},
        {"row sum", matrix({1, 2, 3, 4, 5, 6, 7, 8, 9}), 24},
        {"two channels", matrix({1, 2, -4, 0, 0, 0, 0, 0, 0}), 3},
        {"one channel", matrix({-1, -1, -1, -1, 5, -1, -1, -1, -1}), 5},
        {"none positive", diagonal(-1, -1, -1), 0},
        {"a NaN in the last row spoils the answer", matrix({1, 0, 0, 0, 1, 0, 0, 0, NAN}), NAN},
        {"a NaN that later rows replace", matrix({NAN, 0, 0, 0, 1, 0, 0, 0, 0.5F}), 0.5F},
    };
    for (const auto& c : kCases) {
        const float largest = ColorManager::maxRgb(c.m);
        EXPECT_EQ(fakes::text(&largest, 1), fakes::text(&c.expected, 1)) << c.name;
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
    const struct {
        double given;
        const char* taken;
    } kCases[] = {{-2700.9, "-2700"}, {1e300, "2147483647"},       {-1e300, "-2147483648"}, {HUGE_VAL, "2147483647"},
                  {NAN, "0"},         {2147483646.9, "2147483646"}};
    for (const auto& c : kCases) {
        const double eyeCare[ColorManager::kEyeCareRun] = {c.given, 1.0};
        ColorManager::init(nullptr, eyeCare);
        EXPECT_THAT(happened(), testing::Contains(std::string("log D init: m:") + c.taken + " m:1")) << c.given;
    }
}

TEST_F(ColorManagerTest, UnlimitedGainsGoOntoTheDiagonal) {
    const struct {
        const char* name;
        int error;
        std::vector<float> written;
        Lines log;
        Matrix expected;
    } kCases[] = {
        {"success",
         0,
         {0.5F, 0.25F, 0.125F},
         {"log D setUnlimitedCT: -7  0.500000 0.250000 0.125000"},
         diagonal(0.5F, 0.25F, 0.125F)},
        {"fails without writing",
         -3,
         {},
         {"log E setUnlimitedCT: error -3", "log D setUnlimitedCT: -7  1.000000 1.000000 1.000000"},
         {}},
        {"writes one gain and fails",
         9,
         {0.5F},
         {"log E setUnlimitedCT: error 9", "log D setUnlimitedCT: -7  0.500000 1.000000 1.000000"},
         diagonal(0.5F, 1, 1)},
    };
    ColorManager colors;
    for (const auto& c : kCases) {
        fakes::closedLibraries().error = c.error;
        fakes::closedLibraries().gains = c.written;
        EXPECT_EQ(colors.setUnlimitedCT(-7), 0) << c.name;
        Lines expected = {"closed getUnlimitedCTParams(-7, [1 1 1])"};
        expected.insert(expected.end(), c.log.begin(), c.log.end());
        EXPECT_EQ(happened(), expected) << c.name;
        EXPECT_EQ(textOf(colors.unlimitedCtm), textOf(c.expected)) << c.name;
        EXPECT_EQ(colors.unlimitedCT, -7) << c.name;
    }
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
