// The ambient-light adaptive display: what the composer is told as the light changes, and when; its switch.
#include "alad/DisplayAlad.h"

#include <atomic>
#include <cmath>
#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <system_error>

#include "tests/LightTest.h"

namespace vendor::kov::hardware::display_control::V1_0::implementation {

namespace {

using fakes::Fault;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using namespace std::chrono_literals;

// The real clock by default.
class OddClock : public platform::Clock {
public:
    Duration now() override { return platform::realClock().now(); }
    void sleepFor(Duration duration) override { platform::realClock().sleepFor(duration); }
    void waitUntil(platform::Condition& condition, platform::Lock& lock, Duration deadline) override {
        platform::realClock().waitUntil(condition, lock, deadline);
    }
    std::thread startThread(std::function<void()> body) override {
        return platform::realClock().startThread(std::move(body));
    }
    void join(std::thread& thread) override { platform::realClock().join(thread); }
};

class NoThreads : public OddClock {
    std::thread startThread(std::function<void()>) override {
        throw std::system_error(std::make_error_code(std::errc::resource_unavailable_try_again));
    }
};

// A hundred thousand times as quick as the real one.
class HastyClock : public OddClock {
    static constexpr int kHaste = 100000;

    Duration now() override { return OddClock::now() * kHaste; }
    void sleepFor(Duration duration) override {
        for (const Duration end = now() + duration; now() < end;) std::this_thread::yield();
    }
    void waitUntil(platform::Condition& condition, platform::Lock& lock, Duration deadline) override {
        OddClock::waitUntil(condition, lock, deadline / kHaste);
    }
};

// The journal form of a curve with these entries and zeros elsewhere.
std::string curve(const std::map<size_t, int64_t>& entries) {
    std::string text = "14:";
    for (size_t i = 0; i < 256; ++i) text += " " + std::to_string(entries.count(i) == 0 ? 0 : entries.at(i));
    return text;
}

const std::string kExit = "log D workThread: exit";
const std::string kFind = "sensors getDefaultSensor(5)";
const std::string kQueue = "sensors createEventQueue()";
const std::string kSensorOn = "sensors enableSensor(3, 1000000, 0)";
const std::string kSensorOff = "sensors disableSensor(3)";
const std::string kQueueGone = "sensors queue gone";
const std::string kOff = "composer setAladParams(0, 0)";

}  // namespace

class AladTest : public LightTest {
protected:
    // Switches on; from now on composer calls carry the milliseconds since then.
    void switchOnAndTime() {
        switchAlad(1);
        happened();
        const auto begin = clock.now();
        fakes::journal::setAside([this, begin] { return "@" + std::to_string((clock.now() - begin) / 1ms); });
    }
};

TEST_F(AladTest, TheToneCurveFollowsTheLight) {
    struct Moment {
        std::optional<float> lux;  // none: no event
        int seconds;
        const char* told;
    };
    const struct {
        const char* name;
        std::vector<Moment> moments;
    } kStories[] = {
        {"indoors without an event", {{{}, 3600, ""}}},
        {"bright at the first sample", {{9000, 1, "Start(2)"}, {{}, 1, "Step(3) Step(4)"}, {{}, 60, ""}}},
        {"one bright sample", {{{}, 3, ""}, {9000, 1, ""}, {300, 60, ""}}},
        {"two bright samples", {{{}, 3, ""}, {9000, 1, ""}, {{}, 1, "Start(2)"}, {{}, 60, "Step(3) Step(4)"}}},
        {"8001 is bright", {{8000, 60, ""}, {8001, 1, ""}, {{}, 2, "Start(2) Step(3) Step(4)"}}},
        {"in step both ways",
         {{9000, 2, "Start(2) Step(3) Step(4)"},
          {14000, 60, "Step(5) Step(6) Step(7)"},
          {6000, 60, "Step(6) Step(5) Step(4) Step(3)"},
          {30000, 3, "Step(4) Step(5) Step(6) Step(7) Step(8) Step(9) Step(10) Step(11)"}}},
        {"5000 keeps it on, 4999 does not",
         {{9000, 2, "Start(2) Step(3) Step(4)"},
          {5000, 60, "Step(3) Step(2)"},
          {4999, 1, ""},
          {{}, 2, "Step(2) Off"},
          {{}, 60, ""}}},
        {"two dim samples, however bright before",
         {{12000, 2, "Start(2) Step(3) Step(4) Step(5) Step(6)"},
          {100, 1, ""},
          {{}, 2, "Step(6) Step(5) Step(4) Step(3) Step(2) Off"},
          {9000, 60, "Start(2) Step(3) Step(4)"}}},
        {"a negative mean is no light",
         {{-5, 60, ""}, {9000, 4, "Start(2) Step(3) Step(4)"}, {-5, 60, ""}, {9000, 1, ""}}},
    };
    for (const auto& story : kStories) {
        SCOPED_TRACE(story.name);
        switchAlad(1);
        happened();
        for (const Moment& moment : story.moments) {
            if (moment.lux) light(*moment.lux);
            seconds(moment.seconds);
            EXPECT_EQ(told(), moment.told) << moment.lux.value_or(-1);
        }
        switchAlad(0);
    }
}

TEST_F(AladTest, TheClosedLibraryMayAnswerAnyLevel) {
    constexpr int kMax = INT_MAX;
    constexpr int kMin = INT_MIN;
    const struct {
        int indoors, bright;
        const char* toldBright;
        const char* toldDim;
    } kCases[] = {
        {5, 3, "Start(5)", "Off"},
        {5, 5, "Start(5)", "Step(5) Off"},
        {-1, 1, "Start(-1) Step(0) Step(1)", "Step(1) Step(0) Step(-1) Off"},
        {kMax - 1, kMax, "Start(2147483646) Step(2147483647)", "Step(2147483647) Step(2147483646) Off"},
        {kMin, kMin + 1, "Start(-2147483648) Step(-2147483647)", "Step(-2147483647) Step(-2147483648) Off"},
    };
    for (const auto& c : kCases) {
        fakes::closedLibraries().levelOf = [c](int lux) { return lux > 300 ? c.bright : c.indoors; };
        switchAlad(1);
        happened();
        light(9000);
        seconds(3);
        EXPECT_EQ(told(), c.toldBright);
        light(100);
        seconds(3);
        EXPECT_EQ(told(), c.toldDim);
        switchAlad(0);
    }
}

TEST_F(AladTest, AMessageCarriesTheModeAndTheWholeCurve) {
    fakes::closedLibraries().writeCurve = [](int level, int32_t* curve) {
        curve[level] = -level;
        curve[0] = INT32_MIN;
        curve[255] = INT32_MAX;
    };
    const auto with = [](std::map<size_t, int64_t> entries) {
        entries.insert({{0, -2147483648LL}, {255, 2147483647LL}});
        return curve(entries);
    };
    const std::string kOn = "composer setAladParams(0, 1, ";
    switchAlad(1);
    light(9000);
    seconds(2);
    EXPECT_THAT(composerCalls(),
                ElementsAre(kOn + "0: 4, " + with({{2, -2}}) + ")", kOn + with({{2, -2}, {3, -3}}) + ")",
                            kOn + with({{2, -2}, {3, -3}, {4, -4}}) + ")"));
    light(11000);
    seconds(5);
    EXPECT_THAT(composerCalls(), ElementsAre(kOn + with({{5, -5}}) + ")")) << "what is not written is zero each second";
}

TEST_F(AladTest, MessagesAreApartAndSecondsBetweenSamples) {
    switchOnAndTime();
    light(9000);
    seconds(2);
    light(100);
    seconds(60);
    EXPECT_EQ(told(), "Start(2)@1000 Step(3)@1020 Step(4)@1040 Step(4)@3060 Step(3)@3080 Step(2)@3100 Off@3120");
    light(9000);
    seconds(3);
    EXPECT_EQ(told(), "Start(2)@63140 Step(3)@63160 Step(4)@63180") << "each sample a second after the one before";
}

TEST_F(AladTest, SwitchingOffEndsEveryPhase) {
    const struct {
        int at;  // milliseconds
        int offAt;
        bool waited;  // the worker was waiting for a sample
    } kCases[] = {
        {0, 0, true},        {500, 500, true},    {1000, 1020, false},  // the start message
        {1019, 1020, false}, {1020, 1040, false},                       // going on: no further step
        {1050, 1060, false}, {1060, 1060, true},  {2060, 2060, true},
        {3060, 3080, false}, {3090, 3100, false}, {3130, 3140, false},  // up to another level
        {3140, 3140, true},  {5140, 5160, false}, {5250, 5260, false},  // going off
        {5270, 5280, false},                                            // before its own off message
        {5290, 5300, false},                                            // after it
        {5300, 5300, true},
    };
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.at);
        switchOnAndTime();
        const auto begin = clock.now();
        const auto lightAt = [&](int at, float lux) {
            if (at > c.at) return;
            clock.advance(begin + at * 1ms - clock.now());
            light(lux);
        };
        lightAt(0, 9000);
        lightAt(1100, 30000);
        lightAt(3200, 100);
        clock.advance(begin + c.at * 1ms - clock.now());
        happened();
        EXPECT_EQ(service.setAlad(7, 0, 0), Result::OK);
        EXPECT_EQ((clock.now() - begin) / 1ms, c.offAt);
        Lines expected = {"log I setAlad: 7 0", kSensorOff + "@" + std::to_string(c.at),
                          kQueueGone + "@" + std::to_string(c.at), kOff + "@" + std::to_string(c.offAt)};
        if (c.waited) expected.insert(expected.end() - 1, kExit);
        EXPECT_EQ(happened(), expected);
        seconds(10);
        EXPECT_THAT(happened(), IsEmpty());
    }
}

TEST_F(AladTest, ARefusedMessageChangesNothing) {
    for (const Fault fault : {Fault::REFUSES, Fault::UNREACHABLE}) {
        composer->fault("setAladParams", fault);
        switchAlad(1);
        light(9000);
        seconds(2);
        light(100);
        seconds(5);
        switchAlad(0);
        EXPECT_EQ(told(), "Start(2) Step(3) Step(4) Step(4) Step(3) Step(2) Off Off");
    }
}

TEST_F(AladTest, AnEventsFirstFloatIsTheLightTruncated) {
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    const std::pair<float, const char*> kCases[] = {
        {123.9F, "123"},
        {-0.7F, "0"},
        {-123.9F, "-123"},
        {5.0e10F, "2147483647"},
        {NAN, "0"},
        {-NAN, "0"},
        {kInfinity, "2147483647"},
        {-kInfinity, "-2147483648"},
        {0.0F, "0"},
        {1.0e-45F, "0"},
        {2147483648.0F, "2147483647"},
    };
    fakes::closedLibraries().levelOf = [](int) { return 0; };
    for (const auto& [lux, sample] : kCases) {
        switchAlad(1);
        happened();
        light(lux);
        seconds(1);
        EXPECT_THAT(logLines(), ElementsAre("log D workThread: avg:" + std::string(sample) + " curr:" + sample));
        switchAlad(0);
    }
}

TEST_F(AladTest, EachFailureToEnableLeavesNothing) {
    const struct {
        int result;
        const char* error;
        Lines steps;  // "" is the error line
    } kFailures[] = {
        {-1, "ISensorManager getService error", {""}},
        {-2, "get light Sensor error", {kFind, ""}},
        {-3, "createEventQueue error", {kFind, kQueue, ""}},
        {-4, "enableSensor error", {kFind, kQueue, kSensorOn, ""}},
        {-5, "start worker error", {kFind, kQueue, kSensorOn, "", kSensorOff}},
    };
    const struct {
        int result;
        const char* call;
        Fault fault;
    } kCases[] = {
        {-1, "", Fault::NONE},
        {-2, "getDefaultSensor", Fault::REFUSES},
        {-2, "getDefaultSensor", Fault::SILENT},
        {-2, "getDefaultSensor", Fault::LATE},
        {-2, "getDefaultSensor", Fault::UNREACHABLE},
        {-2, "getDefaultSensor", Fault::DIES_AFTER_ANSWER},
        {-3, "createEventQueue", Fault::REFUSES},
        {-3, "createEventQueue", Fault::SILENT},
        {-3, "createEventQueue", Fault::LATE},
        {-3, "createEventQueue", Fault::UNREACHABLE},
        {-3, "createEventQueue", Fault::DIES_AFTER_ANSWER},
        {-3, "", Fault::NONE},  // OK without a queue
        {-4, "enableSensor", Fault::REFUSES},
        {-4, "enableSensor", Fault::UNREACHABLE},
        {-5, "", Fault::NONE},
    };
    NoThreads noThreads;
    for (const auto& c : kCases) {
        SCOPED_TRACE(std::to_string(c.result) + " " + c.call + " " + std::to_string(static_cast<int>(c.fault)));
        sensors->keep(nullptr);
        sensors->withoutQueue = c.result == -3 && c.fault == Fault::NONE;
        sensors->fault(c.call, c.fault);
        if (c.result == -1) platform::clearServices();
        if (c.result == -5) platform::setClock(&noThreads);
        DisplayAlad alad(composer);
        happened();
        EXPECT_EQ(alad.enable(), c.result);
        sensors->deliverLate();
        Lines steps = happened();
        const auto gone = std::remove(steps.begin(), steps.end(), kQueueGone);
        EXPECT_EQ(steps.end() - gone, c.result <= -3 && !sensors->withoutQueue ? 1 : 0) << "no queue is kept";
        steps.erase(gone, steps.end());
        const auto& failure = kFailures[-c.result - 1];
        Lines expected = failure.steps;
        std::replace(expected.begin(), expected.end(), std::string(), std::string("log E enable: ") + failure.error);
        EXPECT_EQ(steps, expected);
        alad.disable();
        EXPECT_THAT(happened(), IsEmpty()) << "there is nothing to switch off";
        EXPECT_EQ(switchAlad(1), Result::FAILED);
        sensors->deliverLate();
        EXPECT_FALSE(aladIsOn());
        light(1);

        const auto old = sensors->callback();
        sensors->withoutQueue = false;
        sensors->fault(c.call, Fault::NONE);
        sensors->registerAsService();
        composer->registerAsService();
        platform::setClock(&clock);
        EXPECT_EQ(alad.enable(), 0);
        fakes::FakeSensors::deliver(old, 9000);
        happened();
        seconds(5);
        EXPECT_EQ(told(), "") << "the failed attempt's callback is detached";
        alad.disable();
    }
}

TEST_F(AladTest, SwitchingOnTakesTheSensorOnceAndAServiceThatAnswersTwice) {
    sensors->fault("getDefaultSensor", Fault::TWICE);
    sensors->fault("createEventQueue", Fault::TWICE);
    sensors->atEnable = [this] { light(9000); };
    DisplayAlad alad(composer);
    alad.disable();
    EXPECT_THAT(happened(), IsEmpty());
    EXPECT_EQ(alad.enable(), 0);
    EXPECT_EQ(alad.enable(), 0);
    clock.settle();
    EXPECT_THAT(happened(), ElementsAre(kFind, kQueue, kSensorOn));
    seconds(1);
    EXPECT_THAT(logLines(), ElementsAre("log D workThread: avg:9000 curr:9000")) << "one worker; no event is lost";
    alad.disable();
    happened();
    alad.disable();
    EXPECT_THAT(happened(), IsEmpty());
}

TEST_F(AladTest, WhatTheSensorSideDoesWhileSwitchingOffIsHarmless) {
    for (const Fault fault : {Fault::REFUSES, Fault::UNREACHABLE}) {
        sensors->fault("disableSensor", fault);
        switchAlad(1);
        happened();
        EXPECT_EQ(switchAlad(0), Result::OK);
        EXPECT_THAT(happened(), ElementsAre("log I setAlad: 7 0", kSensorOff, "log E disableSensor error", kQueueGone,
                                            kExit, kOff));
        EXPECT_FALSE(aladIsOn());
        light(9000);  // the controller is gone, its callback is not
        switchAlad(1);
        sensors->keep(nullptr);  // the service lets go of it too early
        seconds(1);
        EXPECT_EQ(switchAlad(0), Result::OK);
    }
}

TEST_F(AladTest, SwitchingOnAgainBeginsAnew) {
    DisplayAlad alad(composer);
    EXPECT_EQ(alad.enable(), 0);
    light(9000);
    seconds(2);
    const auto old = sensors->callback();
    alad.disable();
    EXPECT_EQ(told(), "Start(2) Step(3) Step(4) Off");
    alad.notifyData(9000);
    EXPECT_EQ(alad.enable(), 0);
    fakes::FakeSensors::deliver(old, 9000);
    seconds(60);
    EXPECT_EQ(told(), "") << "off, at 300 lux";
    alad.disable();
    EXPECT_EQ(alad.enable(), 0);
    alad.notifyData(9000);
    happened();
    seconds(2);
    EXPECT_EQ(told(), "Start(2) Step(3) Step(4)") << "the first sample fills the ring";
    alad.disable();
}

TEST_F(AladTest, TheSwitchServesDisplay0) {
    const struct {
        uint64_t display;
        uint32_t value;
        Result result;
        bool isOn;
        Lines calls;
    } kCases[] = {
        {0, 0, Result::OK, false, {}},         {1, 1, Result::FAILED, false, {}},
        {1, 0, Result::FAILED, false, {}},     {0, 7, Result::OK, true, {kFind, kQueue, kSensorOn}},
        {0, 1, Result::OK, true, {}},          {UINT64_MAX, 0, Result::FAILED, true, {}},
        {0, UINT32_MAX, Result::OK, true, {}}, {0, 0, Result::OK, false, {kSensorOff, kQueueGone, kExit, kOff}},
        {0, 0, Result::OK, false, {}},
    };
    for (const auto& c : kCases) {
        EXPECT_EQ(switchAlad(c.value, c.display), c.result) << c.value;
        Lines expected = {"log I setAlad: 7 " + std::to_string(static_cast<int32_t>(c.value))};
        expected.insert(expected.end(), c.calls.begin(), c.calls.end());
        EXPECT_EQ(happened(), expected);
        EXPECT_EQ(aladIsOn(), c.isOn);
        EXPECT_THAT(happened(), IsEmpty()) << "asking is silent";
    }
}

TEST_F(AladTest, ARunningControllerOutlivesTheConnection) {
    switchAlad(1);
    service.deInit();
    happened();
    light(9000);
    seconds(2);
    EXPECT_EQ(told(), "Start(2) Step(3) Step(4)");
    EXPECT_EQ(switchAlad(1), Result::OK) << "it is on";
    EXPECT_EQ(switchAlad(0), Result::OK);
    EXPECT_EQ(told(), "Off");
    EXPECT_EQ(switchAlad(1), Result::FAILED);
    EXPECT_THAT(happened(), ElementsAre("log I setAlad: 7 1"));
    EXPECT_FALSE(aladIsOn());
}

TEST(DisplayAladTest, ALuminanceBecomesAGrayValue) {
    EXPECT_EQ(DisplayAlad::nitToGray(0), 0);
    EXPECT_EQ(DisplayAlad::nitToGray(1), 1);
    EXPECT_DOUBLE_EQ(DisplayAlad::nitToGray(0.5), 0.7297400528407231);
    EXPECT_DOUBLE_EQ(DisplayAlad::nitToGray(500), 16.857941694076086);
    EXPECT_TRUE(std::isnan(DisplayAlad::nitToGray(-1)));
}

// Under the thread sanitizer this finds what is not guarded; anywhere it finds a wake-up that is lost, for that costs a
// second each.
TEST_F(AladTest, SwitchesRaceWithEventsFromOtherThreads) {
    HastyClock hasty;
    for (platform::Clock* const racing : {&platform::realClock(), static_cast<platform::Clock*>(&hasty)}) {
        platform::setClock(racing);
        DisplayAlad lasting(composer);
        std::atomic<bool> over{false};
        const auto bothLights = [&over](const std::function<void(int32_t lux)>& give) {
            for (int32_t lux = 100; !over; lux = 9100 - lux) {
                give(lux);
                std::this_thread::yield();
            }
        };
        std::thread events(bothLights, [this](int32_t lux) { light(static_cast<float>(lux)); });
        std::thread feed(bothLights, [&lasting](int32_t lux) { lasting.notifyData(lux); });
        const auto begin = platform::realClock().now();
        for (int round = 0; round < 1500; ++round) {
            DisplayAlad brief(composer);
            for (DisplayAlad* const alad : {&lasting, &brief}) {
                EXPECT_EQ(alad->enable(), 0);
                if (round % 3 == 0) std::this_thread::yield();
                alad->disable();
            }
            EXPECT_THAT(told(), testing::EndsWith("Off"));
        }
        EXPECT_LT(platform::realClock().now() - begin, 30s);
        over = true;
        events.join();
        feed.join();
    }
}

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
