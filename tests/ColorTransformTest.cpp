// The colour transform that clients pass through to the composer.
#include "tests/ServiceTest.h"

namespace vendor::kov::hardware::display_control::V1_0::implementation {

namespace {

using fakes::Fault;
using ::testing::ElementsAre;

ColorTransformMatrix matrix(const std::array<float, 9>& elements) {
    return {elements};
}

const ColorTransformMatrix kA = matrix({1, 2, 3, 4, 5, 6, 7, 8, 9});
const ColorTransformMatrix kB = matrix({-1, 0.5F, 0, 0, 1, 0, 0, 0, 1e9F});
const std::string kAText = "[1 2 3 4 5 6 7 8 9]";
const std::string kBText = "[-1 0.5 0 0 1 0 0 0 1e+09]";
const std::string kZeros = "[0 0 0 0 0 0 0 0 0]";

}  // namespace

class ColorTransformTest : public ServiceTest {
protected:
    ColorTransformTest() { start(); }

    // "RESULT matrices" as the two getters give them, one after the other; a second answer would be seen.
    std::string bothAnswers(uint64_t display) {
        std::string answers;
        service.getColorTransformMatrix(7, display, [&answers](Result result, const ColorTransformMatrix& first) {
            answers += std::to_string(static_cast<int32_t>(result)) + fakes::text(first.elements.data(), 9);
        });
        service.getColorTransformMatrix2(7, display, [&](Result result, const auto& first, const auto& last) {
            answers += " " + std::to_string(static_cast<int32_t>(result)) + fakes::text(first.elements.data(), 9) +
                       fakes::text(last.elements.data(), 9);
        });
        return answers;
    }
};

TEST_F(ColorTransformTest, OneMatrixIsTheLastOfAPair) {
    EXPECT_EQ(service.setColorTransformMatrix(18, 0, kB), Result::OK);
    EXPECT_THAT(happened(), ElementsAre("log D setColorTransformMatrix: 18",
                                        "log D setColorTransformMatrix: setColorTransformMatrix0 -1.000000 0.500000 "
                                        "0.000000",
                                        "log D setColorTransformMatrix: setColorTransformMatrix1 0.000000 1.000000 "
                                        "0.000000",
                                        "log D setColorTransformMatrix: setColorTransformMatrix2 0.000000 0.000000 "
                                        "1000000000.000000",
                                        "composer setColorTransformMatrix(0, I, " + kBText + ")"));
    EXPECT_EQ(bothAnswers(0), "0I 0I" + kBText) << "the single getter gives the first, not the last";
}

TEST_F(ColorTransformTest, TwoMatricesAreSentAsGivenAndNotKept) {
    EXPECT_EQ(service.setColorTransformMatrix2(18, 1, kA, kB), Result::OK);
    EXPECT_THAT(happened(), ElementsAre("log D setColorTransformMatrix2: 18",
                                        "log D setColorTransformMatrix2: first 1.000000 2.000000 3.000000",
                                        "log D setColorTransformMatrix2: first 4.000000 5.000000 6.000000",
                                        "log D setColorTransformMatrix2: first 7.000000 8.000000 9.000000",
                                        "log D setColorTransformMatrix2: last -1.000000 0.500000 0.000000",
                                        "log D setColorTransformMatrix2: last 0.000000 1.000000 0.000000",
                                        "log D setColorTransformMatrix2: last 0.000000 0.000000 1000000000.000000",
                                        "composer setColorTransformMatrix(1, " + kAText + ", " + kBText + ")"));
    EXPECT_EQ(bothAnswers(1), "0" + kAText + " 0" + kAText + kBText);
    EXPECT_THAT(happened(), ElementsAre("log D getColorTransformMatrix: 7", "composer getColorTransformMatrix(1)",
                                        "log D getColorTransformMatrix2: 7", "composer getColorTransformMatrix(1)"));
    service.setColorTransformMatrix(18, 1, kB);
    EXPECT_THAT(composerCalls(), ElementsAre("composer setColorTransformMatrix(1, I, " + kBText + ")"));
}

TEST_F(ColorTransformTest, AnyDisplayIsTheComposersToJudge) {
    service.setColorTransformMatrix(18, UINT64_MAX, kA);
    EXPECT_THAT(composerCalls(),
                ElementsAre("composer setColorTransformMatrix(18446744073709551615, I, " + kAText + ")"));
    EXPECT_EQ(bothAnswers(uint64_t{1} << 32), "0" + kZeros + " 0" + kZeros + kZeros);
}

TEST_F(ColorTransformTest, TheComposersFaultsReachTheClientAsResults) {
    const std::string held = kAText + kBText;
    const struct {
        const char* name;
        Fault fault;
        int32_t set;
        std::string get;
    } kCases[] = {
        {"none", Fault::NONE, 0, "0" + kAText + " 0" + held},
        {"refuses", Fault::REFUSES, -42, "-42" + kAText + " -42" + held},
        {"silent", Fault::SILENT, 0, "0" + kZeros + " 0" + kZeros + kZeros},
        {"unreachable", Fault::UNREACHABLE, -5, "-5" + kZeros + " -5" + kZeros + kZeros},
        {"dies after its answer", Fault::DIES_AFTER_ANSWER, -5, "-5" + kZeros + " -5" + kZeros + kZeros},
    };
    for (const auto& c : kCases) {
        composer->fault("", c.fault);
        EXPECT_EQ(static_cast<int32_t>(Result(service.setColorTransformMatrix(7, 0, kB))), c.set) << c.name;
        EXPECT_EQ(static_cast<int32_t>(Result(service.setColorTransformMatrix2(7, 0, kA, kB))), c.set) << c.name;
        EXPECT_EQ(bothAnswers(0), c.get) << c.name;
    }
}

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
