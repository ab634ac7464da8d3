#include <android/log.h>

#include <array>
#include <set>
#include <thread>

#include "service/NextHandle.h"
#include "tests/ServiceTest.h"

namespace vendor::kov::hardware::display_control::V1_0::implementation {

namespace {

using fakes::Fault;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr int64_t kUnknown = 4294967295;  // the unsigned image of -1
constexpr uint64_t kLargest = UINT64_MAX;

const std::vector<double> kWhite = {0.5, 0, 0, 0, 1, 0, 0, 0, 1};
const std::vector<double> kCorrection = {1, 0, 0, 0, 0.5, 0, 0, 0, 1};

}  // namespace

class LifecycleTest : public ServiceTest {
protected:
    std::string calibrationOf(uint64_t display) const {
        const ColorManager& colors = service.displayColors()[display];
        return fakes::text(colors.calibWpcCtm.data(), 9) + fakes::text(colors.calibCcmCtm.data(), 9);
    }
};

TEST_F(LifecycleTest, StartAsksTheComposerThenAppliesTheCalibration) {
    calibrate(block("CTM_WPC", kWhite) + block("CTM_CCM", kCorrection) +
              block("Gamma_Calib", std::vector<double>(4096, 0.25)) +
              block("Gamma_Tuning", std::vector<double>(4096, 0.75)) +
              "<UnlimitedCT><Warm>0xFF0000</Warm><Cold>0000FF</Cold></UnlimitedCT><EyeCare><MaxCCT>6500</MaxCCT>" +
              elements(std::vector<double>(36, 0.5)) + "<MinCCT>2700</MinCCT></EyeCare>");
    EXPECT_EQ(service.init(), 0);
    EXPECT_THAT(happened(), ElementsAre("composer getNumOfDisplay()", "composer getDisplayInfo(0)",
                                        "composer getDisplayInfo(1)", "log E parser: open panel name node error",
                                        std::string("log D parser: panel xml ") + fakes::kDefaultCalibration,
                                        "closed setEyeCareParamsOled(6500, 2700)", "log D init: m:6500 m:2700",
                                        "closed setParams(FF0000, FF)", "log D init: w:00FF0000 c:000000FF",
                                        "composer setGlobalGammaLut(0)", "log I init: OK"));
    EXPECT_EQ(composer->gamma[0].entries[4095], 0.75F) << "the tuned table wins";
    EXPECT_EQ(calibrationOf(0), "[0.5 0 0 0 1 0 0 0 1][1 0 0 0 0.5 0 0 0 1]");
    EXPECT_EQ(calibrationOf(1), "II");
    for (const ColorManager& colors : service.displayColors()) {
        EXPECT_EQ(fakes::text(colors.finalCtm().data(), 9), "I") << "nothing is in effect before a mode is chosen";
    }
}

TEST_F(LifecycleTest, WhatTheCalibrationLacksIsNotApplied) {
    const std::string configured = "closed setParams(FFFFEA, EDFDFF)";
    calibrate(block("Gamma_Calib", std::vector<double>(4096, 0.25)));
    EXPECT_EQ(service.init(), 0);
    EXPECT_THAT(happened(), testing::IsSupersetOf({configured, std::string("composer setGlobalGammaLut(0)")}));
    EXPECT_EQ(composer->gamma[0].entries[0], 0.25F);

    calibrate(block("Gamma_Calib", std::vector<double>(4095, 0.5)));
    EXPECT_EQ(service.init(), 0);
    EXPECT_THAT(happened(), testing::Not(Contains("composer setGlobalGammaLut(0)"))) << "one value is missing";

    composer->count = 0;
    calibrate(block("Gamma_Calib", std::vector<double>(4096, 0.5)));
    EXPECT_EQ(service.init(), 0);
    EXPECT_THAT(happened(),
                ElementsAre("composer getNumOfDisplay()", "log E parser: open panel name node error",
                            std::string("log D parser: panel xml ") + fakes::kDefaultCalibration, "log I init: OK"))
        << "no display to apply it to";
}

TEST_F(LifecycleTest, EveryOutcomeOfTheStart) {
    constexpr const char* kNoDisplay = "-3: 0 0 0, 0";
    constexpr const char* kInfo = "0: 11 12 13, display 1";
    constexpr const char* kNoInfo = "0: 0 0 0, ";
    const struct {
        uint32_t count;
        const char* call;
        Fault fault;
        int64_t known;  // kUnknown when the start fails
        const char* secondDisplay;
    } kCases[] = {
        {2, "", Fault::NONE, 2, kInfo},
        {0, "", Fault::NONE, 0, kNoDisplay},
        {1, "", Fault::NONE, 1, kNoDisplay},
        {100000, "", Fault::NONE, kUnknown, kNoDisplay},  // no memory for the lists
        {0x80000000U, "", Fault::NONE, kUnknown, kNoDisplay},
        {0xFFFFFFFFU, "", Fault::NONE, kUnknown, kNoDisplay},
        {2, "getNumOfDisplay", Fault::REFUSES, kUnknown, kNoDisplay},
        {2, "getNumOfDisplay", Fault::SILENT, kUnknown, kNoDisplay},
        {2, "getNumOfDisplay", Fault::UNREACHABLE, kUnknown, kNoDisplay},
        {2, "getNumOfDisplay", Fault::DIES_AFTER_ANSWER, kUnknown, kNoDisplay},
        {2, "getDisplayInfo(1", Fault::REFUSES, 2, kInfo},
        {2, "getDisplayInfo(1", Fault::SILENT, 2, kNoInfo},
        {2, "getDisplayInfo", Fault::UNREACHABLE, 2, kNoInfo},
        {2, "getDisplayInfo", Fault::DIES_AFTER_ANSWER, 2, kNoInfo},
        {2, "setGlobalGammaLut", Fault::REFUSES, 2, kInfo},
        {2, "setGlobalGammaLut", Fault::UNREACHABLE, 2, kInfo},
    };
    calibrate(block("Gamma_Calib", std::vector<double>(4096, 0.5)));
    for (const auto& c : kCases) {
        SCOPED_TRACE(std::string(c.call) + " " + std::to_string(c.count) + " " +
                     std::to_string(static_cast<int>(c.fault)));
        const sp<fakes::FakeComposer> odd = new fakes::FakeComposer;
        odd->registerAsService();
        odd->count = c.count;
        odd->fault(c.call, c.fault);
        renewService();
        EXPECT_EQ(service.init(), c.known == kUnknown ? -2 : 0);
        const Lines lines = logLines();
        EXPECT_EQ(std::count(lines.begin(), lines.end(), "log E init: getNumOfDisplay error!"), c.known == kUnknown);
        EXPECT_EQ(std::count(lines.begin(), lines.end(), "log E operator(): getDisplayInfo 1 error!"),
                  c.fault == Fault::REFUSES && c.call == std::string("getDisplayInfo(1"));
        EXPECT_EQ(numOfDisplay(), c.known);
        EXPECT_EQ(displayInfo(1), c.secondDisplay);
        EXPECT_EQ(service.displayColors().size(), c.known == kUnknown ? 0U : static_cast<size_t>(c.known));
    }
}

TEST_F(LifecycleTest, WithoutAComposerNothingIsTouched) {
    platform::clearServices();
    EXPECT_EQ(service.init(), -1);
    EXPECT_THAT(happened(), ElementsAre("log E init: get composer ext service error!"));
    EXPECT_EQ(numOfDisplay(), kUnknown);

    composer->registerAsService("another instance");
    EXPECT_EQ(service.init(), -1);
    composer->registerAsService();
    EXPECT_EQ(start(), 0);
    platform::clearServices();
    EXPECT_EQ(service.init(), -1);
    EXPECT_EQ(numOfDisplay(), 2) << "what was learned stays";
    EXPECT_EQ(service.setUnlimitedCT(7, 0, 5), Result::FAILED) << "the earlier connection is given back";
}

TEST_F(LifecycleTest, ALaterStartKeepsTheStateOfDisplaysThatRemain) {
    EXPECT_EQ(start(), 0);
    service.setUnlimitedCT(7, 0, 40);
    service.setUnlimitedCT(7, 1, 41);

    composer->count = 3;
    EXPECT_EQ(start(), 0);
    EXPECT_EQ(unlimitedLevel(1), "0 41");
    EXPECT_EQ(unlimitedLevel(2), "0 0");
    EXPECT_EQ(displayInfo(2), "0: 21 22 23, display 2");

    composer->count = 1;
    EXPECT_EQ(start(), 0);
    EXPECT_EQ(unlimitedLevel(0), "0 40");
    EXPECT_EQ(unlimitedLevel(1), "-5 0");

    composer->fault("getNumOfDisplay", Fault::REFUSES);
    EXPECT_EQ(start(), -2);
    EXPECT_EQ(service.displayColors().size(), 1U) << "the lists stay";
    EXPECT_EQ(unlimitedLevel(0), "-5 0") << "but no display is known";
    EXPECT_EQ(displayInfo(0), "-3: 0 0 0, 0");

    composer->fault("getNumOfDisplay", Fault::NONE);
    composer->count = 2;
    EXPECT_EQ(start(), 0);
    EXPECT_EQ(unlimitedLevel(0), "0 40");
    EXPECT_EQ(unlimitedLevel(1), "0 0") << "display 1 had gone";

    composer->count = 0;
    EXPECT_EQ(start(), 0);
    EXPECT_THAT(service.displayColors(), IsEmpty());
}

TEST_F(LifecycleTest, WithoutAConnectionOperationsFailAndTouchNothing) {
    const auto failing = [this] {
        const ColorTransformMatrix m{};
        const auto table = std::make_unique<GammaLut>();
        EXPECT_EQ(service.setColorTransformMatrix(7, 0, m), Result::FAILED);
        EXPECT_EQ(service.setColorTransformMatrix2(7, 0, m, m), Result::FAILED);
        EXPECT_EQ(service.setGlobalGammaLut(7, 0, *table), Result::FAILED);
        EXPECT_EQ(service.setGlobalDeGammaLut(7, 0, *table), Result::FAILED);
        EXPECT_EQ(service.setGlobalGamma(7, 0, 1.0F), Result::FAILED);
        EXPECT_EQ(service.setUnlimitedCT(7, 0, 5), Result::FAILED);
        EXPECT_EQ(service.setEyeCareCT(7, 0, 5), Result::FAILED);
        EXPECT_EQ(service.setStandardMode(7, 0, 0), -5);
        EXPECT_EQ(service.setEnhanceScreenMode(7, 0, 0), -5);
        EXPECT_EQ(service.setSmartEnvironmentMode(7, 0, 0), -5);
        std::vector<Result> answers;
        service.getColorTransformMatrix(7, 0, [&](Result r, const auto&) { answers.push_back(r); });
        service.getColorTransformMatrix2(7, 0, [&](Result r, const auto&, const auto&) { answers.push_back(r); });
        service.getGlobalGammaLut(7, 0, [&](Result r, const auto&) { answers.push_back(r); });
        service.getGlobalDeGammaLut(7, 0, [&](Result r, const auto&) { answers.push_back(r); });
        EXPECT_EQ(answers, std::vector<Result>(4, Result::FAILED));
        EXPECT_EQ(service.currentScreenMode(), DisplayControlImpl::NONE);
        for (const std::string& line : happened()) EXPECT_THAT(line, testing::StartsWith("log ")) << "nothing but log";
    };
    failing();
    EXPECT_EQ(unlimitedLevel(0), "-5 0");
    EXPECT_EQ(start(), 0);
    service.deInit();
    failing();
    EXPECT_EQ(unlimitedLevel(0), "0 0") << "what is known stays known";
    EXPECT_EQ(displayInfo(1), "0: 11 12 13, display 1");
}

TEST_F(LifecycleTest, DisplayQueriesAnswerFromWhatTheStartLearned) {
    EXPECT_EQ(displayInfo(0), "-3: 0 0 0, 0");
    EXPECT_EQ(numOfDisplay(), kUnknown);
    EXPECT_EQ(start(), 0);
    EXPECT_EQ(displayInfo(0), "0: 1 2 3, display 0");
    for (const uint64_t bad : {uint64_t{2}, uint64_t{1} << 32, kLargest}) EXPECT_EQ(displayInfo(bad), "-3: 0 0 0, 0");
    happened();
    numOfDisplay();
    displayInfo(9);
    EXPECT_THAT(happened(), ElementsAre("log I getNumOfDisplay: 7", "log I getDisplayInfo: 7"));
}

TEST_F(LifecycleTest, HandlesCountUpAndAreNeverLookedUp) {
    const auto alloc = [this](uint32_t value) {
        uint64_t handle = 0;
        service.allocUserHandle(value, [&handle](Result result, uint64_t given) {
            EXPECT_EQ(result, Result::OK);
            handle = given;
            fakes::journal::add("handle given");
        });
        return handle;
    };
    const uint64_t first = alloc(0);
    EXPECT_EQ(alloc(UINT32_MAX), first + 1);
    happened();
    EXPECT_EQ(service.freeUserHandle(kLargest), Result::OK);
    EXPECT_EQ(alloc(3), first + 2);
    EXPECT_THAT(happened(), ElementsAre("log I freeUserHandle: 18446744073709551615", "handle given",
                                        "log I allocUserHandle: " + std::to_string(first + 2)));
    EXPECT_EQ(nextHandle(0), 1U);
    EXPECT_EQ(nextHandle(kLargest - 1), kLargest);
    EXPECT_EQ(nextHandle(kLargest), 1U) << "0 is never handed out";
}

TEST_F(LifecycleTest, ThreadsNeverShareAHandle) {
    constexpr size_t kEach = 20000;
    __android_log_set_minimum_priority(ANDROID_LOG_SILENT);  // else the journal would make them take turns
    std::array<std::vector<uint64_t>, 4> given;
    std::vector<std::thread> clients;
    for (auto& handles : given) {
        clients.emplace_back([this, &handles] {
            const auto keep = [&handles](Result, uint64_t handle) { handles.push_back(handle); };
            for (size_t i = 0; i < kEach; ++i) service.allocUserHandle(0, keep);
        });
    }
    for (std::thread& client : clients) client.join();
    __android_log_set_minimum_priority(ANDROID_LOG_DEFAULT);
    std::set<uint64_t> all;
    for (const auto& handles : given) all.insert(handles.begin(), handles.end());
    EXPECT_EQ(all.size(), 4 * kEach);
    EXPECT_EQ(*all.rbegin() - *all.begin(), 4 * kEach - 1) << "none is lost";
}

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
