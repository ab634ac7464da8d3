// Exclusive mode: what is taken away on the way in, and what comes back on the way out.
#include <cmath>
#include <optional>

#include "tests/LightTest.h"

namespace vendor::kov::hardware::display_control::V1_0::implementation {

namespace {

using fakes::Fault;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;

const std::string kWhite = block("CTM_WPC", {1, 0, 0, 0, 0.5, 0, 0, 0, 1});
const std::string kCorrection = block("CTM_CCM", {1, 0, 0, 0, 1, 0, 0, 0, 0.5});
const std::string kGamma = block("Gamma_Calib", std::vector<double>(4096, 0.25));
const std::string kTuned = block("Gamma_Tuning", std::vector<double>(4096, 0.75));
const std::string kParsed = std::string("log D parser: panel xml ") + fakes::kDefaultCalibration;
const std::string kNoPanelName = "log E parser: open panel name node error";

std::string matrix(const std::string& last) {
    return "composer setColorTransformMatrix(0, I, " + last + ")";
}

}  // namespace

// The service in standard mode with a calibration whose matrices are diagonal(1, 0.125, 1) and diagonal(1, 1, 0.125).
class ExclusiveModeTest : public LightTest {
protected:
    ExclusiveModeTest() { startInStandardMode(); }

    void startInStandardMode() {
        calibrate(block("CTM_WPC", {1, 0, 0, 0, 0.125, 0, 0, 0, 1}) +
                  block("CTM_CCM", {1, 0, 0, 0, 1, 0, 0, 0, 0.125}));
        service = {};
        start();
        service.setStandardMode(7, 0, 0);
        happened();
    }

    const Lines cleared = {"composer setExclusiveMode(0, 1)", matrix("I"), "composer setGlobalGammaLut(0)"};
};

TEST_F(ExclusiveModeTest, EnteringTakesEveryAdjustmentAwayInOrder) {
    switchAlad(1);
    happened();
    Lines expected = {"log I exclusiveModeEnter: 7 -1"};
    expected.insert(expected.end(), cleared.begin(), cleared.end());
    Lines again = expected;
    const Lines aladOff = {"sensors disableSensor(3)", "sensors queue gone", "log D workThread: exit",
                           "composer setAladParams(0, 0)"};
    expected.insert(expected.end(), aladOff.begin(), aladOff.end());
    for (Lines* const lines : {&expected, &again}) lines->push_back("node lcd_cabc_mode 30 0a");

    EXPECT_EQ(service.exclusiveModeEnter(7, UINT32_MAX), Result::OK);
    EXPECT_EQ(happened(), expected);
    EXPECT_FALSE(aladIsOn());
    EXPECT_EQ(phone.read(fakes::kCabcNode), "0\n99\n");
    const auto& table = composer->gamma[0].entries;
    EXPECT_EQ(table[0], 0);
    EXPECT_EQ(table[2048], 0.7297400610631936F);
    EXPECT_EQ(table[4095], static_cast<float>(std::pow(4095.0 / 4096, 0.45454543828964233)));

    EXPECT_EQ(service.exclusiveModeEnter(7, UINT32_MAX), Result::OK);
    EXPECT_EQ(happened(), again) << "it is not remembered";
    EXPECT_EQ(service.exclusiveModeExit(7, 0), Result::OK);
    EXPECT_FALSE(aladIsOn()) << "nor does leaving switch it on";
}

TEST_F(ExclusiveModeTest, LevelsAndTheScreenModeSurvive) {
    fakes::closedLibraries().gains = {1, 1, 0.5F};
    service.setUnlimitedCT(7, 0, 12);
    service.setEyeCareCT(7, 0, 5);
    fakes::closedLibraries().gains = {};
    service.exclusiveModeEnter(7, 1);
    calibrate(kWhite + kCorrection);
    service.exclusiveModeExit(7, 1);
    EXPECT_THAT(happened(), Contains(matrix("[1 0 0 0 0.5 0 0 0 0.25]"))) << "the gains are in it";
    EXPECT_EQ(unlimitedLevel(0) + " " + eyeCareLevel(0), "0 12 0 5");
    EXPECT_EQ(service.currentScreenMode(), DisplayControlImpl::STANDARD);
    service.setStandardMode(7, 0, 0);
    EXPECT_THAT(happened(), Contains(matrix("[1 0 0 0 0.125 0 0 0 0.0625]"))) << "a mode takes what the start read";
}

TEST_F(ExclusiveModeTest, LeavingPutsBackWhatTheCalibrationHolds) {
    const struct {
        const char* name;
        std::optional<std::string> blocks;  // none: no file
        std::string last;
        float gamma;  // 0: none is sent
    } kCases[] = {
        {"no file", {}, "[1 0 0 0 0.125 0 0 0 0.125]", 0},
        {"nothing", "", "[1 0 0 0 0.125 0 0 0 0.125]", 0},
        {"white point", kWhite, "[1 0 0 0 0.5 0 0 0 0.125]", 0},
        {"correction", kCorrection, "[1 0 0 0 0.125 0 0 0 0.5]", 0},
        {"both", kWhite + kCorrection, "[1 0 0 0 0.5 0 0 0 0.5]", 0},
        {"calibrated gamma", kGamma, "[1 0 0 0 0.125 0 0 0 0.125]", 0.25F},
        {"tuned gamma", kTuned, "[1 0 0 0 0.125 0 0 0 0.125]", 0.75F},
        {"both gammas", kGamma + kTuned, "[1 0 0 0 0.125 0 0 0 0.125]", 0.75F},
        {"matrices and gamma", kWhite + kCorrection + kGamma, "[1 0 0 0 0.5 0 0 0 0.5]", 0.25F},
        {"also the libraries'", kWhite + "<UnlimitedCT><Warm>1</Warm><Cold>2</Cold></UnlimitedCT>",
         "[1 0 0 0 0.5 0 0 0 0.125]", 0},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.name);
        startInStandardMode();
        phone.remove(fakes::kDefaultCalibration);
        if (c.blocks) calibrate(*c.blocks);
        EXPECT_EQ(service.exclusiveModeExit(7, UINT32_MAX), Result::OK);
        Lines expected = {"log I exclusiveModeExit: 7 -1", "composer setExclusiveMode(0, 0)", kNoPanelName, kParsed};
        Lines lines = happened();
        if (!c.blocks) lines.erase(lines.begin() + 4);  // the reader's word on the file
        expected.push_back(matrix(c.last));
        if (c.gamma != 0) expected.push_back("composer setGlobalGammaLut(0)");
        EXPECT_EQ(lines, expected);
        if (c.gamma == 0) continue;
        EXPECT_EQ(composer->gamma[0].entries[4095], c.gamma);
    }
}

TEST_F(ExclusiveModeTest, WithoutADisplayOnlyTheGammaTableComesBack) {
    calibrate(kWhite + kGamma);
    for (const bool refused : {false, true}) {
        composer->count = 0;
        composer->fault("getNumOfDisplay", refused ? Fault::REFUSES : Fault::NONE);
        EXPECT_EQ(start(), refused ? -2 : 0);
        EXPECT_EQ(service.exclusiveModeExit(7, 1), Result::OK);
        EXPECT_THAT(composerCalls(), ElementsAre("composer setExclusiveMode(0, 0)", "composer setGlobalGammaLut(0)"));
        EXPECT_EQ(service.exclusiveModeEnter(7, 1), Result::OK);
        EXPECT_EQ(composerCalls(), cleared);
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

TEST_F(ExclusiveModeTest, NeitherTheComposerNorTheNodeCanHinderIt) {
    phone.remove(fakes::kCabcNode);
    calibrate(kGamma);
    for (const Fault fault : {Fault::NONE, Fault::REFUSES, Fault::UNREACHABLE}) {
        composer->fault("", fault);
        switchAlad(1);
        happened();
        EXPECT_EQ(service.exclusiveModeEnter(7, 1), Result::OK);
        EXPECT_EQ(service.exclusiveModeExit(7, 1), Result::OK);
        const Lines lines = happened();
        EXPECT_EQ(
            std::count_if(lines.begin(), lines.end(), [](auto& line) { return line.compare(0, 9, "composer ") == 0; }),
            7);
        EXPECT_THAT(lines, Contains("log E setCabcSysNode: open cabc node error"));
        EXPECT_THAT(lines, Not(Contains(StartsWith("closed "))));
        EXPECT_FALSE(aladIsOn());
    }
}

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
