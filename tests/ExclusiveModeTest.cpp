// Exclusive mode: what is taken away on the way in, and what comes back on the way out.
#include <optional>

#include "tests/LightTest.h"

namespace vendor::kov::hardware::display_control::V1_0::implementation {

namespace {

using fakes::Fault;
using ::testing::Contains;
using ::testing::ElementsAre;

const std::string kWhite = block("CTM_WPC", {1, 0, 0, 0, 0.5, 0, 0, 0, 1});
const std::string kCorrection = block("CTM_CCM", {1, 0, 0, 0, 1, 0, 0, 0, 0.5});
const std::string kLibraries = "<UnlimitedCT><Warm>1</Warm><Cold>2</Cold></UnlimitedCT>";

}  // namespace

// The service in standard mode with a calibration whose matrices are diagonal(1, 0.125, 1) and diagonal(1, 1, 0.125).
class ExclusiveModeTest : public LightTest {
protected:
    ExclusiveModeTest() { startInStandardMode(); }

    void startInStandardMode() {
        calibrate(block("CTM_WPC", {1, 0, 0, 0, 0.125, 0, 0, 0, 1}) +
                  block("CTM_CCM", {1, 0, 0, 0, 1, 0, 0, 0, 0.125}));
        renewService();
        start();
        service.setStandardMode(7, 0, 0);
        happened();
    }
    static std::string sent(const std::string& last) {
        return "composer setColorTransformMatrix(0, I, [1 0 0 0 " + last + "])";
    }

    const std::string gamma = "composer setGlobalGammaLut(0)";
    const Lines cleared = {"composer setExclusiveMode(0, 1)", "composer setColorTransformMatrix(0, I, I)", gamma};
    const Lines aladOff = {"sensors disableSensor(3)", "sensors queue gone", "log D workThread: exit",
                           "composer setAladParams(0, 0)"};
};

TEST_F(ExclusiveModeTest, EnteringTakesEveryAdjustmentAwayInOrder) {
    const auto enterWith = [this](std::string node, const Lines& alad) {
        happened();
        EXPECT_EQ(service.exclusiveModeEnter(7, UINT32_MAX), Result::OK);
        Lines expected = {"log I exclusiveModeEnter: 7 -1"};
        for (const Lines& lines : {cleared, alad, {std::move(node)}})
            expected.insert(expected.end(), lines.begin(), lines.end());
        EXPECT_EQ(happened(), expected);
        EXPECT_FALSE(aladIsOn());
    };
    switchAlad(1);
    enterWith("node lcd_cabc_mode 30 0a", aladOff);
    const auto& table = composer->gamma[0].entries;
    EXPECT_EQ(table[0], 0);
    EXPECT_EQ(table[2048], 0.7297400610631936F);
    EXPECT_LT(table[4095], 1);
    enterWith("node lcd_cabc_mode 30 0a", {});
    phone.remove(fakes::kCabcNode);
    for (const Fault fault : {Fault::REFUSES, Fault::UNREACHABLE}) {
        composer->fault("", fault);
        switchAlad(1);
        enterWith("log E setCabcSysNode: open cabc node error", aladOff);
        EXPECT_EQ(service.exclusiveModeExit(7, 1), Result::OK);
        EXPECT_THAT(composerCalls(), ElementsAre("composer setExclusiveMode(0, 0)", sent("0.125 0 0 0 0.125")));
        EXPECT_FALSE(aladIsOn()) << "nor does leaving switch it on";
    }
}

TEST_F(ExclusiveModeTest, LevelsAndTheScreenModeSurvive) {
    fakes::closedLibraries().gains = {1, 1, 0.5F};
    service.setUnlimitedCT(7, 0, 12);
    service.setEyeCareCT(7, 0, 5);
    service.exclusiveModeEnter(7, 1);
    calibrate(kWhite + kCorrection);
    service.exclusiveModeExit(7, 1);
    EXPECT_THAT(happened(), Contains(sent("0.5 0 0 0 0.25"))) << "the gains are in it";
    EXPECT_EQ(unlimitedLevel(0) + " " + eyeCareLevel(0), "0 12 0 5");
    EXPECT_EQ(service.currentScreenMode(), DisplayControlImpl::STANDARD);
    service.setStandardMode(7, 0, 0);
    EXPECT_THAT(happened(), Contains(sent("0.125 0 0 0 0.0625"))) << "a mode takes what the start read";
}

TEST_F(ExclusiveModeTest, LeavingPutsBackWhatTheCalibrationHolds) {
    const std::string kGamma = block("Gamma_Calib", std::vector<double>(4096, 0.25));
    const std::string kTuned = block("Gamma_Tuning", std::vector<double>(4096, 0.75));
    const struct {
        const char* name;
        std::optional<std::string> blocks;  // none: no file
        std::string last;
        float gamma;  // 0: none is sent
    } kCases[] = {{"no file", {}, "0.125 0 0 0 0.125", 0},
                  {"nothing", "", "0.125 0 0 0 0.125", 0},
                  {"white point", kWhite + kLibraries, "0.5 0 0 0 0.125", 0},
                  {"correction", kCorrection, "0.125 0 0 0 0.5", 0},
                  {"both and gamma", kWhite + kCorrection + kGamma, "0.5 0 0 0 0.5", 0.25F},
                  {"tuned gamma", kTuned, "0.125 0 0 0 0.125", 0.75F},
                  {"both gammas", kGamma + kTuned, "0.125 0 0 0 0.125", 0.75F}};
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.name);
        startInStandardMode();
        phone.remove(fakes::kDefaultCalibration);
        if (c.blocks) calibrate(*c.blocks);
        composer->gamma[0].entries[4095] = 0;
        EXPECT_EQ(service.exclusiveModeExit(7, UINT32_MAX), Result::OK);
        Lines lines = happened();
        lines.erase(
            std::remove_if(lines.begin(), lines.end(), [](auto& line) { return line.find(" parser: ") != line.npos; }),
            lines.end());
        Lines expected = {"log I exclusiveModeExit: 7 -1", "composer setExclusiveMode(0, 0)", sent(c.last)};
        if (c.gamma != 0) expected.push_back(gamma);
        EXPECT_EQ(lines, expected) << "the closed libraries keep their configuration";
        EXPECT_EQ(composer->gamma[0].entries[4095], c.gamma);
    }
    calibrate(kWhite + kGamma);
    for (const Fault fault : {Fault::NONE, Fault::REFUSES}) {
        composer->count = 0;
        composer->fault("getNumOfDisplay", fault);
        EXPECT_EQ(start(), fault == Fault::NONE ? 0 : -2);
        EXPECT_EQ(service.exclusiveModeExit(7, 1), Result::OK);
        EXPECT_THAT(composerCalls(), ElementsAre("composer setExclusiveMode(0, 0)", gamma)) << "no display is known";
    }
}

TEST_F(ExclusiveModeTest, WithoutAComposerNothingIsTouched) {
    switchAlad(1);
    service.deInit();
    happened();
    EXPECT_EQ(service.exclusiveModeEnter(7, 1), Result::FAILED);
    EXPECT_EQ(service.exclusiveModeExit(7, 1), Result::FAILED);
    EXPECT_THAT(happened(), ElementsAre("log I exclusiveModeEnter: 7 1", "log I exclusiveModeExit: 7 1"));
    EXPECT_TRUE(aladIsOn());
}

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
