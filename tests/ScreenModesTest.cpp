// What changes a display's colour state: colour temperatures, screen modes, and the backlight control beside them.
#include <optional>

#include "tests/ServiceTest.h"

namespace vendor::kov::hardware::display_control::V1_0::implementation {

namespace {

using fakes::Fault;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr uint64_t kBadDisplays[] = {2, 1ULL << 31, 1ULL << 32, UINT64_MAX};

}  // namespace

// Display 0's calibration: white point diagonal(1, 0.5, 0.5), colour correction diagonal(1, 1, 0.5).
class ScreenModesTest : public ServiceTest {
protected:
    ScreenModesTest() {
        calibrate(block("CTM_WPC", {1, 0, 0, 0, 0.5, 0, 0, 0, 0.5}) + block("CTM_CCM", {1, 0, 0, 0, 1, 0, 0, 0, 0.5}) +
                  block("WPCParam", {1, 2, 3, 4, 5, 6, 7, 8, 9}));
        start();
    }
    ~ScreenModesTest() override { fakes::journal::setAside(nullptr); }

    // From now on every event but log lines says which screen mode is in force.
    void watchTheMode() {
        fakes::journal::setAside([this] { return " in mode " + std::to_string(service.currentScreenMode()); });
    }

    static std::string sent(uint64_t display, const std::string& last) {
        return "composer setColorTransformMatrix(" + std::to_string(display) + ", I, " + last + ")";
    }
};

TEST_F(ScreenModesTest, AColourTemperatureIsSentOnceAndRemembered) {
    EXPECT_EQ(unlimitedLevel(0), "0 0");
    EXPECT_EQ(eyeCareLevel(0), "0 0");
    EXPECT_THAT(happened(), IsEmpty()) << "asking for a level is silent";

    fakes::closedLibraries().gains = {1, 0.5F, 0.25F};
    EXPECT_EQ(service.setUnlimitedCT(7, 0, 12), Result::OK);
    EXPECT_THAT(happened(), ElementsAre("closed getUnlimitedCTParams(12, [1 1 1])",
                                        "log D setUnlimitedCT: 12  1.000000 0.500000 0.250000",
                                        sent(0, "[1 0 0 0 0.5 0 0 0 0.25]")));
    fakes::closedLibraries().error = -1;
    fakes::closedLibraries().coefficients = {0.5F, 0, 0, 0, 1, 0, 0, 0, 1};
    EXPECT_EQ(service.setEyeCareCT(7, 0, -3), Result::OK);
    EXPECT_THAT(composerCalls(), ElementsAre(sent(0, "[1 0 0 0 1 0 0 0 0.5]")));
    EXPECT_EQ(unlimitedLevel(0), "0 12");
    EXPECT_EQ(eyeCareLevel(0), "0 -3");
    EXPECT_EQ(unlimitedLevel(1), "0 0");
    EXPECT_EQ(eyeCareLevel(1), "0 0");
}

TEST_F(ScreenModesTest, AModeSendsTheMatrixThenIsInForceThenWritesTheNode) {
    watchTheMode();
    EXPECT_EQ(service.setStandardMode(7, 0, 99), 0);
    EXPECT_THAT(happened(),
                ElementsAre("log D setStandardMode: enter", sent(0, "[1 0 0 0 0.5 0 0 0 0.25]") + " in mode -1",
                            "node lcd_cabc_mode 30 0a in mode 2"));
    EXPECT_EQ(service.setEnhanceScreenMode(7, 0, 99), 0);
    EXPECT_THAT(happened(), ElementsAre("log D setEnhanceScreenMode: enter", sent(0, "I") + " in mode 2",
                                        "node lcd_cabc_mode 30 0a in mode 1"));
    phone.write(fakes::kWhitePointNode, "x=313,y=329\n");
    fakes::closedLibraries().whiteGains = {1, 0.75F, 0.5F};
    EXPECT_EQ(service.setSmartEnvironmentMode(7, 0, 99), 0);
    EXPECT_THAT(happened(), ElementsAre("log D setSmartEnvironmentMode: 313 329 0.313000 0.329000",
                                        "closed algorithm made in mode 1", "closed WhitePointCalibrate in mode 1",
                                        "log D setSmartEnvironmentMode: 1.000000 0.750000 0.500000",
                                        sent(0, "[1 0 0 0 0.75 0 0 0 0.5]") + " in mode 1",
                                        "node lcd_cabc_mode 31 0a in mode 0", "closed algorithm gone in mode 0"));
    EXPECT_EQ(service.setStandardMode(7, 1, 0), 0);
    EXPECT_THAT(happened(), Contains(sent(1, "I") + " in mode 0")) << "display 1 has no calibration";
    EXPECT_EQ(service.currentScreenMode(), DisplayControlImpl::STANDARD) << "the mode is the whole service's";
}

TEST_F(ScreenModesTest, ColourTemperaturesOutliveEveryMode) {
    fakes::closedLibraries().gains = {0.5F, 1, 1};
    service.setUnlimitedCT(7, 0, 12);
    happened();
    service.setStandardMode(7, 0, 0);
    service.setEnhanceScreenMode(7, 0, 0);
    service.setSmartEnvironmentMode(7, 0, 0);
    service.setEnhanceScreenMode(7, 1, 0);
    EXPECT_THAT(composerCalls(), ElementsAre(sent(0, "[1 0 0 0 1 0 0 0 0.5]"), sent(0, "[0.5 0 0 0 1 0 0 0 1]"),
                                             sent(0, "[0.5 0 0 0 1 0 0 0 1]"), sent(1, "I")));
    EXPECT_EQ(unlimitedLevel(0), "0 12");
    service.setStandardMode(7, 0, 0);
    happened();
    fakes::closedLibraries().gains = {1, 1, 1};
    service.setUnlimitedCT(7, 0, 13);
    EXPECT_THAT(composerCalls(), ElementsAre(sent(0, "[1 0 0 0 0.5 0 0 0 0.25]"))) << "nor does a level end a mode";
}

TEST_F(ScreenModesTest, ThePanelsWhitePointIsReadAnewInItsForm) {
    const std::string kForm = "E format wpc error";
    const std::string kDefault = "[0.280000001 0.300000012]";
    const std::string kRead = "[0.312999994 0.328999996]";
    const struct {
        std::optional<std::string> node;
        std::string log;
        std::string given;  // to the closed library
    } kCases[] = {
        {"x=313,y=329\n", "D 313 329 0.313000 0.329000", kRead},
        {"x=313,y=329", "D 313 329 0.313000 0.329000", kRead},
        {std::nullopt, "E open wpc node error", kDefault},
        {"", "E read wpc node error", kDefault},
        {"x=313", kForm, kDefault},
        {"x=313,y=", kForm, kDefault},
        {"x=313,y=-\n", kForm, kDefault},
        {" x=313,y=329", kForm, kDefault},
        {"x=313 ,y=329", kForm, kDefault},
        {"x=0.313,y=0.329", kForm, kDefault},
        {"X=313,y=329", kForm, kDefault},
        {std::string("x=31\0,y=329", 11), kForm, kDefault},
        {"x= -5,y=\t+7 junk", "D -5 7 -0.005000 0.007000", "[-0.00499999989 0.00700000022]"},
        {"x=1,y=0x10", "D 1 0 0.001000 0.000000", "[0.00100000005 0]"},
        {"x=99999999999999999999,y=-3000000000", "D 2147483647 -2147483648 2147483.750000 -2147483.750000",
         "[2147483.75 -2147483.75]"},
        {"x=313,y=" + std::string(53, ' ') + "3299", "D 313 329 0.313000 0.329000", kRead},  // cut after 64 bytes
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.node.value_or("no node"));
        phone.remove(fakes::kWhitePointNode);
        if (c.node) phone.write(fakes::kWhitePointNode, *c.node);
        happened();
        EXPECT_EQ(service.setSmartEnvironmentMode(7, 0, 0), 0);
        EXPECT_THAT(logLines(), ElementsAre("log " + c.log.substr(0, 2) + "setSmartEnvironmentMode: " + c.log.substr(2),
                                            "log D setSmartEnvironmentMode: 1.000000 1.000000 1.000000"));
        EXPECT_EQ(fakes::text(&fakes::closedLibraries().whitePoint.whiteX, 2), c.given);
    }
}

TEST_F(ScreenModesTest, TheCalibrationsWhitePointParametersAreUsedWhenComplete) {
    const auto given = [this] {
        service.setSmartEnvironmentMode(7, 0, 0);
        const android::WhitePointCalibrateParam& param = fakes::closedLibraries().whitePoint;
        const float gains[] = {param.gainR, param.gainG, param.gainB};
        return fakes::text(param.params, 9) + fakes::text(gains, 3);
    };
    EXPECT_EQ(given(), "[1 2 3 4 5 6 7 8 9][1 1 1]");
    calibrate(block("WPCParam", {1, 2, 3, 4, 5, 6, 7, 8}));
    start();
    EXPECT_EQ(given(), "[0.660000026 0.294999987 0.150000006 0.333999991 0.656000018 0.0549999997 0 0 0][1 1 1]");
}

TEST_F(ScreenModesTest, BacklightControlModesActInSmartEnvironmentModeOnly) {
    const std::string kInvalid = "log E setCabcMode: invalid value";
    const std::pair<int32_t, std::string> kCases[] = {{0, "node lcd_cabc_mode 30 0a"},
                                                      {1, "node lcd_cabc_mode 31 0a"},
                                                      {2, "node lcd_cabc_mode 31 0a"},
                                                      {3, "node lcd_cabc_mode 32 0a"},
                                                      {4, "node lcd_cabc_mode 33 0a"},
                                                      {5, kInvalid},
                                                      {-1, kInvalid},
                                                      {INT32_MIN, kInvalid},
                                                      {INT32_MAX, kInvalid}};
    DisplayControlImpl fresh;
    EXPECT_EQ(fresh.setCabcMode(7, 0, 3), 0);
    service.setStandardMode(7, 0, 0);
    happened();
    EXPECT_EQ(service.setCabcMode(7, 0, 3), 0);
    EXPECT_EQ(service.setCabcMode(7, 0, 9), 0);
    service.setEnhanceScreenMode(7, 0, 0);
    happened();
    EXPECT_EQ(service.setCabcMode(7, 0, 3), 0);
    EXPECT_THAT(happened(), IsEmpty());

    service.setSmartEnvironmentMode(7, 0, 0);
    happened();
    for (const auto& [mode, effect] : kCases) {
        EXPECT_EQ(service.setCabcMode(7, UINT64_MAX, mode), effect == kInvalid ? -5 : 0) << mode;
        EXPECT_THAT(happened(), ElementsAre("log D setCabcMode: enter " + std::to_string(mode), effect));
    }
}

TEST_F(ScreenModesTest, TheBacklightNodeTakesOneByteAndALineFeed) {
    for (const auto& [level, bytes] :
         {std::pair{0, "30"}, {9, "39"}, {12, "3c"}, {-49, "ff"}, {208, "00"}, {INT32_MAX, "2f"}, {INT32_MIN, "30"}}) {
        EXPECT_EQ(service.setCabcSysNode(7, UINT64_MAX, level), 0);
        EXPECT_THAT(happened(), ElementsAre("node lcd_cabc_mode " + std::string(bytes) + " 0a")) << level;
    }
    service.setCabcSysNode(7, 0, 3);
    EXPECT_EQ(phone.read(fakes::kCabcNode), "3\n99\n") << "two bytes, nothing truncated";
}

TEST_F(ScreenModesTest, AMissingBacklightNodeFailsItsOwnOperationsOnly) {
    const std::string kError = "log E setCabcSysNode: open cabc node error";
    phone.remove(fakes::kCabcNode);
    EXPECT_EQ(service.setStandardMode(7, 0, 0), 0);
    EXPECT_EQ(service.setEnhanceScreenMode(7, 0, 0), 0);
    EXPECT_THAT(happened(), ElementsAre("log D setStandardMode: enter", sent(0, "[1 0 0 0 0.5 0 0 0 0.25]"), kError,
                                        "log D setEnhanceScreenMode: enter", sent(0, "I"), kError));
    EXPECT_EQ(service.setSmartEnvironmentMode(7, 0, 0), 0);
    happened();
    EXPECT_EQ(service.setCabcMode(7, 0, 1), -5);
    EXPECT_EQ(service.setCabcSysNode(7, 0, 0), -5);
    EXPECT_THAT(happened(), ElementsAre("log D setCabcMode: enter 1", kError, kError));
    EXPECT_EQ(phone.read(fakes::kCabcNode), "") << "it is not created";
}

TEST_F(ScreenModesTest, AnUnknownDisplayIsRefusedWithoutEffect) {
    for (const uint64_t bad : kBadDisplays) {
        EXPECT_EQ(service.setUnlimitedCT(7, bad, 5), Result::FAILED) << bad;
        EXPECT_EQ(service.setEyeCareCT(7, bad, 5), Result::FAILED) << bad;
        EXPECT_EQ(service.setStandardMode(7, bad, 0), -5) << bad;
        EXPECT_EQ(service.setEnhanceScreenMode(7, bad, 0), -5) << bad;
        EXPECT_EQ(service.setSmartEnvironmentMode(7, bad, 0), -5) << bad;
        EXPECT_EQ(unlimitedLevel(bad), "-5 0") << bad;
        EXPECT_EQ(eyeCareLevel(bad), "-5 0") << bad;
    }
    EXPECT_EQ(service.currentScreenMode(), DisplayControlImpl::NONE);
    for (const std::string& line : happened()) EXPECT_THAT(line, testing::EndsWith(": enter")) << "nothing but the log";
}

TEST_F(ScreenModesTest, TheComposersAnswerIsDropped) {
    for (const Fault fault : {Fault::REFUSES, Fault::UNREACHABLE}) {
        composer->fault("setColorTransformMatrix", fault);
        EXPECT_EQ(service.setUnlimitedCT(7, 0, 5), Result::OK);
        EXPECT_EQ(service.setEyeCareCT(7, 0, 6), Result::OK);
        EXPECT_EQ(service.setStandardMode(7, 0, 0), 0);
        EXPECT_EQ(service.setEnhanceScreenMode(7, 0, 0), 0);
        EXPECT_EQ(service.setSmartEnvironmentMode(7, 0, 0), 0);
        EXPECT_EQ(service.currentScreenMode(), DisplayControlImpl::SMART_ENVIRONMENT);
        EXPECT_EQ(unlimitedLevel(0) + " " + eyeCareLevel(0), "0 5 0 6");
    }
}

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
