// Features by number.
#include <cmath>
#include <map>

#include "tests/ServiceTest.h"

namespace vendor::kov::hardware::display_control::V1_0::implementation {

// The service in smart environment mode.
class FeaturesTest : public ServiceTest {
protected:
    FeaturesTest() { startInSmartEnvironmentMode(); }

    void startInSmartEnvironmentMode() {
        renewService();
        start();
        service.setSmartEnvironmentMode(7, 0, 0);
        happened();
    }

    // Adds "RESULT count" per call of the callback.
    DisplayControlImpl::FeatureValues toAnswers() {
        return [this](Result result, const hidl_vec<double>& values) {
            answers += std::to_string(static_cast<int32_t>(result)) + " " + std::to_string(values.size()) + ";";
        };
    }

    std::string answers;
};

TEST_F(FeaturesTest, EveryNumberLeadsToItsOperationOrFails) {
    const std::string kMatrix = "composer setColorTransformMatrix(0, I, I)";
    const std::map<int32_t, Lines> kEffects = {{0,
                                                {"closed algorithm made", "closed WhitePointCalibrate", kMatrix,
                                                 "node lcd_cabc_mode 31 0a", "closed algorithm gone"}},
                                               {1, {kMatrix, "node lcd_cabc_mode 30 0a"}},
                                               {2, {kMatrix, "node lcd_cabc_mode 30 0a"}},
                                               {3, {"closed getEyeCareCoeffOled(3, I)", kMatrix}},
                                               {7, {"node lcd_cabc_mode 32 0a"}},
                                               {23, {"closed getUnlimitedCTParams(3, [1 1 1])", kMatrix}}};
    for (int32_t feature = -2; feature <= 26; ++feature) {
        SCOPED_TRACE(feature);
        startInSmartEnvironmentMode();
        const bool known = kEffects.count(feature) != 0;
        EXPECT_EQ(service.setFeature(7, 0, feature, 3, -9), known ? 0 : -5);
        Lines lines = happened();
        EXPECT_EQ(lines[0], "log D setFeature: u:7 d:0 m:" + std::to_string(feature) + " v:3 c:-9");
        EXPECT_TRUE(known || lines.size() == 1);
        lines.erase(std::remove_if(lines.begin(), lines.end(), [](auto& line) { return line.rfind("log", 0) == 0; }),
                    lines.end());
        EXPECT_EQ(lines, known ? kEffects.at(feature) : Lines());
        EXPECT_EQ(eyeCareLevel(0), feature == 3 ? "0 3" : "0 0");
        EXPECT_EQ(unlimitedLevel(0), feature == 23 ? "0 3" : "0 0");
        EXPECT_EQ(service.currentScreenMode(), feature == 1 || feature == 2 ? feature : 0);
    }
}

TEST_F(FeaturesTest, OnlySomeReportWhatTheirOperationReports) {
    EXPECT_EQ(service.setFeature(7, 0, 7, 9, 0), -5);
    for (const auto& [feature, result] : {std::pair{0, 0}, {1, 0}, {2, 0}, {3, -5}, {23, -5}}) {
        happened();
        EXPECT_EQ(service.setFeature(7, 2, feature, 3, 0), result) << feature;
        EXPECT_THAT(happened(), testing::Each(testing::StartsWith("log D set"))) << "nothing but the entry";
        EXPECT_EQ(service.currentScreenMode(), DisplayControlImpl::SMART_ENVIRONMENT);
    }
    phone.remove(fakes::kCabcNode);
    EXPECT_EQ(service.setFeature(7, 0, 7, 3, 0), -5);
    EXPECT_EQ(service.setFeature(7, 0, 2, 0, 0), 0) << "the node is not its result";
    EXPECT_EQ(service.setFeature(7, 0, 7, 9, 0), 0) << "nothing to do in standard mode";
}

TEST_F(FeaturesTest, TheVectorFormTakesTwoValuesTruncated) {
    const std::pair<std::vector<double>, const char*> kCases[] = {
        // values, what the feature is given; "" when it is not reached
        {{}, ""},
        {{1}, ""},
        {{1, 2, 3}, ""},
        {{2.9, -1.9}, "v:2 c:-1"},
        {{-0.9, 0.9}, "v:0 c:0"},
        {{INFINITY, -INFINITY}, "v:2147483647 c:-2147483648"},
        {{NAN, 7}, "v:0 c:7"},
        {{-1e300, 1e300}, "v:-2147483648 c:2147483647"},
        {{2147483647.9, -2147483648.9}, "v:2147483647 c:-2147483648"}};
    for (const auto& [values, given] : kCases) {
        const bool reached = *given != 0;
        for (const int32_t feature : {5, 23}) {
            answers.clear();
            service.setMiscFeature(7, 1, feature, values, toAnswers());
            EXPECT_EQ(answers, reached && feature == 23 ? "0 0;" : "-5 0;");
            const Lines lines = logLines();
            EXPECT_EQ(lines.empty() ? "" : lines[0],
                      reached ? "log D setFeature: u:7 d:1 m:" + std::to_string(feature) + " " + given : "");
        }
    }
    EXPECT_EQ(unlimitedLevel(1), "0 2147483647");
    answers.clear();
    for (const int32_t feature : {-1, 0, 23, 24}) service.getMiscFeature(7, 0, feature, toAnswers());
    EXPECT_EQ(answers, "-5 0;-5 0;-5 0;-5 0;") << "none can be read";
    EXPECT_THAT(happened(), testing::IsEmpty());
}

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
