// Features by number.
#include <limits>
#include <map>

#include "tests/ServiceTest.h"

namespace vendor::kov::hardware::display_control::V1_0::implementation {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

}  // namespace

// The service in smart environment mode.
class FeaturesTest : public ServiceTest {
protected:
    FeaturesTest() { startInSmartEnvironmentMode(); }

    void startInSmartEnvironmentMode() {
        service = {};
        start();
        service.setSmartEnvironmentMode(7, 0, 0);
        happened();
    }

    // "RESULT count" per call of the callback.
    DisplayControlImpl::FeatureValues record() {
        return [this](Result result, const hidl_vec<double>& values) {
            answers.push_back(std::to_string(static_cast<int32_t>(result)) + " " + std::to_string(values.size()));
        };
    }

    Lines answers;
};

TEST_F(FeaturesTest, EveryNumberLeadsToItsOperationOrFails) {
    const std::string kIdentity = "composer setColorTransformMatrix(0, I, I)";
    const std::map<int32_t, Lines> kEffects = {
        {0,
         {"log E setSmartEnvironmentMode: open wpc node error", "closed algorithm made", "closed WhitePointCalibrate",
          kIdentity, "node lcd_cabc_mode 31 0a", "closed algorithm gone"}},
        {1, {kIdentity, "node lcd_cabc_mode 30 0a"}},
        {2, {kIdentity, "node lcd_cabc_mode 30 0a"}},
        {3, {"closed getEyeCareCoeffOled(3, I)", kIdentity}},
        {7, {"node lcd_cabc_mode 32 0a"}},
        {23, {"closed getUnlimitedCTParams(3, [1 1 1])", kIdentity}},
    };
    const auto isOwnLog = [](const std::string& line) {
        return line.rfind("log D ", 0) == 0 && line.rfind("log D setFeature: ", 0) != 0;
    };
    for (int32_t feature = -2; feature <= 26; ++feature) {
        SCOPED_TRACE(feature);
        startInSmartEnvironmentMode();
        const auto effect = kEffects.find(feature);
        EXPECT_EQ(service.setFeature(7, 0, feature, 3, -9), effect == kEffects.end() ? -5 : 0);
        Lines expected = {"log D setFeature: u:7 d:0 m:" + std::to_string(feature) + " v:3 c:-9"};
        if (effect != kEffects.end()) expected.insert(expected.end(), effect->second.begin(), effect->second.end());
        Lines lines = happened();
        lines.erase(std::remove_if(lines.begin(), lines.end(), isOwnLog), lines.end());
        EXPECT_EQ(lines, expected);
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
    const struct {
        std::vector<double> values;
        const char* given;  // null: the feature is not reached
    } kCases[] = {
        {{}, nullptr},
        {{1}, nullptr},
        {{1, 2, 3}, nullptr},
        {{2.9, -1.9}, "v:2 c:-1"},
        {{-0.9, 0.9}, "v:0 c:0"},
        {{kInfinity, -kInfinity}, "v:2147483647 c:-2147483648"},
        {{std::numeric_limits<double>::quiet_NaN(), 7}, "v:0 c:7"},
        {{-1e300, 1e300}, "v:-2147483648 c:2147483647"},
        {{2147483647.9, -2147483648.9}, "v:2147483647 c:-2147483648"},
    };
    for (const auto& c : kCases) {
        for (const auto& [feature, result] : {std::pair{23, "0 0"}, {5, "-5 0"}}) {
            answers.clear();
            service.setMiscFeature(7, 1, feature, c.values, record());
            EXPECT_THAT(answers, ElementsAre(c.given == nullptr ? "-5 0" : result));
            Lines lines = logLines();
            lines.resize(std::min<size_t>(lines.size(), 1));
            EXPECT_EQ(lines, c.given == nullptr
                                 ? Lines{}
                                 : Lines{"log D setFeature: u:7 d:1 m:" + std::to_string(feature) + " " + c.given});
        }
    }
    EXPECT_EQ(unlimitedLevel(1), "0 2147483647");
}

TEST_F(FeaturesTest, NoFeatureCanBeRead) {
    for (const int32_t feature : {-1, 0, 3, 7, 23, 24}) service.getMiscFeature(7, 0, feature, record());
    EXPECT_EQ(answers, Lines(6, "-5 0"));
    EXPECT_THAT(happened(), IsEmpty());
}

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
