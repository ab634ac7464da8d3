// The ambient-light adaptive display: what the composer is told as the light changes, and when; its switch.
#include "alad/DisplayAlad.h"

#include <atomic>
#include <cmath>
#include <map>
#include <thread>

#include "tests/LightTest.h"

namespace vendor::kov::hardware::display_control::V1_0::implementation {

namespace {

using fakes::Fault;
using ::testing::ElementsAre;
using namespace std::chrono_literals;

const std::string kExit = "log D workThread: exit";
const std::string kFind = "sensors getDefaultSensor(5)";
const std::string kQueue = "sensors createEventQueue()";
const std::string kSensorOn = "sensors enableSensor(3, 1000000, 0)";
const std::string kSensorOff = "sensors disableSensor(3)";
const std::string kQueueGone = "sensors queue gone";
const std::string kOff = "composer setAladParams(0, 0)";

// Threads run as they like; no pause lasts. Deadlines either have always passed, or never pass,
// so that a wake-up that is lost would be waited for without end.
struct RacingClock : platform::Clock {
    explicit RacingClock(bool deadlinesPass) : passing(deadlinesPass) {}

    Duration now() override { return 0s; }
    void sleepFor(Duration /*duration*/) override { std::this_thread::yield(); }
    void waitUntil(platform::Condition& condition, platform::Lock& lock, Duration /*deadline*/) override {
        const uint64_t before = condition.notifications();
        while (!passing && condition.notifications() == before) condition.wait(lock);
        if (passing) condition.waitUntil(lock, std::chrono::steady_clock::now().time_since_epoch());
    }
    std::unique_ptr<platform::Thread> startThread(std::function<void()> body) override {
        return platform::Thread::start(std::move(body));
    }
    void join(platform::Thread& thread) override { thread.join(); }

    const bool passing;
};

}  // namespace

class AladTest : public LightTest {
protected:
    // Switches on and forgets what happened; from now on every event but log lines carries the milliseconds since then.
    void switchOn() {
        switchAlad(1);
        happened();
        switchedOn = clock.now();
        fakes::journal::setAside([this] { return "@" + std::to_string((clock.now() - switchedOn) / 1ms); });
    }
    // Goes to that time since then; in the light of the events on the way.
    void goTo(int milliseconds, const std::map<int, float>& lights = {}) {
        for (const auto& [at, lux] : lights) {
            if (at > milliseconds) break;
            goTo(at);
            light(lux);
        }
        clock.advance(switchedOn + milliseconds * 1ms - clock.now());
    }

    platform::Clock::Duration switchedOn{};
};

TEST_F(AladTest, TheToneCurveFollowsTheLight) {
    const std::string kUp = "Start(2)@1000 Step(3)@1020 Step(4)@1040";
    const struct {
        const char* name;
        std::map<int, float> lights;  // milliseconds: lux
        std::string told;
    } kStories[] = {
        {"indoors without an event", {}, ""},
        {"bright at the first sample", {{0, 9000}}, kUp},
        {"one bright sample", {{3500, 9000}, {4500, 300}}, ""},
        {"two bright samples", {{3500, 9000}}, "Start(2)@5000 Step(3)@5020 Step(4)@5040"},
        {"8000 is not bright, 8001 is", {{0, 8000}, {9500, 8001}}, "Start(2)@11000 Step(3)@11020 Step(4)@11040"},
        {"up and down, a second after the last message's pause",
         {{0, 9000}, {2500, 14000}, {9500, 6000}},
         kUp + " Step(5)@4060 Step(6)@5080 Step(7)@6100 Step(6)@11120 Step(5)@11140 Step(4)@12160 Step(3)@13180"},
        {"by several levels",
         {{0, 9000}, {2500, 22000}},
         kUp + " Step(5)@4060 Step(6)@4080 Step(7)@5100 Step(8)@5120 Step(9)@6140 Step(10)@6160 Step(11)@6180"},
        {"to a level below indoors", {{0, 50000}, {2500, 100}}, "Start(2)@1000 Off()@4020"},
        {"5000 is not dim", {{0, 9000}, {2500, 5000}}, kUp + " Step(3)@4060 Step(2)@6080"},
        {"4999 is", {{0, 9000}, {2500, 4999}}, kUp + " Step(4)@4060 Step(3)@4080 Step(2)@4100 Off()@4120"},
        {"off and on again",
         {{0, 9000}, {1500, 100}, {9500, 9000}},
         kUp + " Step(4)@3060 Step(3)@3080 Step(2)@3100 Off()@3120 Start(2)@11140 Step(3)@11160 Step(4)@11180"},
        {"a negative mean is no light",
         {{0, -5}, {2500, 9000}, {4500, -5}},
         "Start(2)@4000 Step(3)@4020 Step(4)@4040"}};
    for (const auto& story : kStories) {
        for (const Fault fault : {Fault::NONE, Fault::REFUSES, Fault::UNREACHABLE}) {
            composer->fault("setAladParams", fault);
            switchOn();
            goTo(20000, story.lights);
            EXPECT_EQ(told(), story.told) << story.name;
            switchAlad(0);
        }
    }
}

TEST_F(AladTest, AMessageCarriesTheModeAndTheWholeCurve) {
    fakes::closedLibraries().writeCurve = [](int level, int32_t* curve) {
        curve[level] = -level;
        curve[0] = INT32_MIN;
        curve[255] = INT32_MAX;
    };
    const auto message = [](const std::string& beginning, const std::map<int, int>& entries) {
        std::string line = "composer setAladParams(0, 1, " + beginning + "14: -2147483648";
        for (int i = 1; i < 255; ++i) line += " " + std::to_string(entries.count(i) == 0 ? 0 : entries.at(i));
        return line + " 2147483647)";
    };
    switchAlad(1);
    light(9000);
    seconds(2);
    EXPECT_THAT(composerCalls(), ElementsAre(message("0: 4, ", {{2, -2}}), message("", {{2, -2}, {3, -3}}),
                                             message("", {{2, -2}, {3, -3}, {4, -4}})));
    light(11000);
    seconds(5);
    EXPECT_THAT(composerCalls(), ElementsAre(message("", {{5, -5}}))) << "what is not written is zero at each sample";
}

TEST_F(AladTest, SwitchingOffEndsEveryPhase) {
    const struct {
        int at, offAt;  // milliseconds
        bool waited;    // the worker was waiting for a sample
    } kCases[] = {{0, 0, true},        {500, 500, true},    {1000, 1020, false},
                  {1019, 1020, false}, {1020, 1040, false}, {1050, 1060, false},
                  {1060, 1060, true},  {2060, 2060, true},  {3060, 3080, false},
                  {3090, 3100, false}, {3130, 3140, false}, {3140, 3140, true},   // up to another level
                  {5140, 5160, false}, {5250, 5260, false}, {5270, 5280, false},  // before the worker's own off message
                  {5290, 5300, false}, {5300, 5300, true}};                       // after it
    for (const auto& c : kCases) {
        switchOn();
        goTo(c.at, {{0, 9000}, {1100, 30000}, {3200, 100}});
        happened();
        service.setAlad(7, 0, 0);
        const std::string at = "@" + std::to_string(c.at);
        Lines expected = {"log I setAlad: 7 0", kSensorOff + at, kQueueGone + at};
        if (c.waited) expected.push_back(kExit);
        expected.push_back(kOff + "@" + std::to_string(c.offAt));
        seconds(10);
        EXPECT_EQ(happened(), expected);
    }
}

TEST_F(AladTest, AnEventsFirstFloatIsTheLightTruncated) {
    fakes::closedLibraries().levelOf = [](int) { return 0; };
    const std::pair<float, const char*> kCases[] = {{123.9F, "123"},           {-0.7F, "0"}, {-1.9F, "-1"},
                                                    {5.0e10F, "2147483647"},   {NAN, "0"},   {INFINITY, "2147483647"},
                                                    {-INFINITY, "-2147483648"}};
    for (const auto& [lux, sample] : kCases) {
        switchOn();
        goTo(1000, {{0, lux}});
        EXPECT_THAT(logLines(), ElementsAre("log D workThread: avg:" + std::string(sample) + " curr:" + sample));
        switchAlad(0);
    }
}

TEST_F(AladTest, EachFailureToEnableLeavesNothing) {
    using Faults = std::vector<Fault>;
    const Faults kNone = {Fault::NONE};
    const Faults kDead = {Fault::REFUSES, Fault::UNREACHABLE};
    const Faults kAny = {Fault::REFUSES, Fault::SILENT, Fault::UNREACHABLE, Fault::DIES_AFTER_ANSWER};
    const struct {
        int result;
        const char* call;
        Faults faults;
        std::string error;
        int queues;
    } kCases[] = {{-1, "", kNone, "ISensorManager getService error", 0},
                  {-2, "getDefaultSensor", kAny, "get light Sensor error", 0},
                  {-3, "createEventQueue", kAny, "createEventQueue error", 1},
                  {-3, "", kNone, "createEventQueue error", 0},  // OK without a queue
                  {-4, "enableSensor", kDead, "enableSensor error", 1},
                  {-5, "", kNone, "start worker error", 1}};
    for (const auto& c : kCases) {
        for (const Fault fault : c.faults) {
            SCOPED_TRACE(c.error + std::to_string(static_cast<int>(fault)));
            sensors->withoutQueue = c.queues == 0;
            sensors->fault(c.call, fault);
            if (c.result == -1) platform::clearServices();
            clock.refuseThreads(c.result == -5);
            EXPECT_EQ(switchAlad(1), Result::FAILED);
            EXPECT_FALSE(aladIsOn());
            happened();
            DisplayAlad alad(composer);
            EXPECT_EQ(alad.enable(), c.result);
            alad.disable();
            const Lines steps = {kFind, kQueue, kSensorOn};
            Lines expected(steps.begin(), steps.begin() + std::min(-c.result - 1, 3));
            const bool delivered = fault != Fault::SILENT && fault != Fault::UNREACHABLE;
            if (c.result == -3 && c.queues == 1 && !delivered) expected.push_back(kQueueGone);
            expected.push_back("log E enable: " + c.error);
            if (c.result == -5) expected.push_back(kSensorOff);
            if (c.queues == 1 && (c.result != -3 || delivered)) expected.push_back(kQueueGone);
            EXPECT_EQ(happened(), expected) << "none is kept";

            const auto old = sensors->callback();
            sensors->withoutQueue = false;
            sensors->fault(c.call, Fault::NONE);
            sensors->registerAsService();
            clock.refuseThreads(false);
            EXPECT_EQ(alad.enable(), 0);
            fakes::FakeSensors::deliver(old, 9000);
            seconds(5);
            EXPECT_EQ(told(), "") << "the failed attempt's callback is detached";
            alad.disable();
        }
    }
}

TEST_F(AladTest, ASecondEnableOrDisableDoesNothing) {
    sensors->atEnable = [this] { light(7000); };
    DisplayAlad alad(composer);
    EXPECT_EQ(alad.enable(), 0);
    EXPECT_EQ(alad.enable(), 0);
    seconds(1);
    alad.disable();
    alad.disable();
    EXPECT_THAT(happened(), ElementsAre(kFind, kQueue, kSensorOn, "log D workThread: avg:7000 curr:7000", kSensorOff,
                                        kQueueGone, kExit, kOff))
        << "one worker; an early event counts";
}

TEST_F(AladTest, TheSensorSideCannotHinderSwitchingOff) {
    for (const Fault fault : {Fault::REFUSES, Fault::UNREACHABLE}) {
        sensors->fault("disableSensor", fault);
        switchAlad(1);
        happened();
        EXPECT_EQ(switchAlad(0), Result::OK);
        EXPECT_THAT(happened(), ElementsAre("log I setAlad: 7 0", kSensorOff, "log E disableSensor error", kQueueGone,
                                            kExit, kOff));
        light(9000);  // the controller is gone, its callback is not
        switchAlad(1);
        sensors->keep(nullptr);  // the service lets go of it too early
        EXPECT_EQ(switchAlad(0), Result::OK);
    }
}

TEST_F(AladTest, SwitchingOnAgainBeginsAnew) {
    DisplayAlad alad(composer);
    alad.enable();
    light(9000);
    seconds(2);
    const auto old = sensors->callback();
    alad.disable();
    EXPECT_EQ(told(), "Start(2) Step(3) Step(4) Off()");
    alad.notifyData(9000);
    EXPECT_EQ(alad.enable(), 0);
    fakes::FakeSensors::deliver(old, 9000);
    seconds(60);
    EXPECT_EQ(told(), "") << "off, at 300 lux";
    alad.disable();
    alad.enable();
    alad.notifyData(9000);
    happened();
    seconds(1);
    EXPECT_EQ(told(), "Start(2)") << "the first sample fills the ring";
    alad.disable();
}

TEST_F(AladTest, TheSwitchServesDisplay0) {
    const struct {
        uint64_t display;
        uint32_t value;
        Result result;
        int isOn;
        Lines calls;
    } kCases[] = {{0, 0, Result::OK, 0, {}},
                  {1, 1, Result::FAILED, 0, {}},
                  {0, 7, Result::OK, 1, {kFind, kQueue, kSensorOn}},
                  {0, UINT32_MAX, Result::OK, 1, {}},
                  {UINT64_MAX, 0, Result::FAILED, 1, {}},
                  {0, 0, Result::OK, 0, {kSensorOff, kQueueGone, kExit, kOff}}};
    for (const auto& c : kCases) {
        EXPECT_EQ(switchAlad(c.value, c.display), c.result) << c.value;
        EXPECT_EQ(aladIsOn(), c.isOn);
        Lines expected = {"log I setAlad: 7 " + std::to_string(static_cast<int32_t>(c.value))};
        expected.insert(expected.end(), c.calls.begin(), c.calls.end());
        EXPECT_EQ(happened(), expected);
    }
}

TEST_F(AladTest, ARunningControllerOutlivesTheConnection) {
    switchOn();
    service.deInit();
    goTo(2000, {{0, 9000}});
    EXPECT_EQ(switchAlad(1), Result::OK) << "it is on";
    EXPECT_EQ(switchAlad(0), Result::OK);
    EXPECT_EQ(told(), "Start(2)@1000 Step(3)@1020 Step(4)@1040 Off()@2000");
    EXPECT_EQ(switchAlad(1), Result::FAILED);
    EXPECT_THAT(happened(), ElementsAre("log I setAlad: 7 1"));
}

TEST_F(AladTest, ALuminanceBecomesAGrayValue) {
    EXPECT_EQ(DisplayAlad::nitToGray(1), 1);
    EXPECT_DOUBLE_EQ(DisplayAlad::nitToGray(0.5), 0.7297400528407231);
    EXPECT_DOUBLE_EQ(DisplayAlad::nitToGray(500), 16.857941694076086);
    EXPECT_TRUE(std::isnan(DisplayAlad::nitToGray(-1)));
}

// Under the thread sanitizer this finds what is not guarded; anywhere it does not end when a wake-up is lost.
TEST_F(AladTest, SwitchesRaceWithEventsFromOtherThreads) {
    for (const bool deadlinesPass : {false, true}) {
        RacingClock racing(deadlinesPass);
        platform::setClock(&racing);
        DisplayAlad lasting(composer);
        std::atomic<bool> over{false};
        const auto giveLights = [&over](const std::function<void(int32_t lux)>& give) {
            for (int32_t lux = 100; !over; lux = 9100 - lux) {
                give(lux);
                std::this_thread::yield();
            }
        };
        std::thread events(giveLights, [this](int32_t lux) { light(static_cast<float>(lux)); });
        std::thread feed(giveLights, [&lasting](int32_t lux) { lasting.notifyData(lux); });
        std::thread handles(giveLights, [this](int32_t) { service.allocUserHandle(0, [](Result, uint64_t) {}); });
        const auto yield = [](int turns) {
            for (; turns > 0; --turns) std::this_thread::yield();
        };
        bool stepped = false;
        for (int round = 0; round < 700; ++round) {
            DisplayAlad brief(composer);
            for (DisplayAlad* const alad : {&lasting, &brief}) {
                EXPECT_EQ(alad->enable(), 0);
                yield(round % 20);
                alad->disable();
            }
            EXPECT_EQ(service.setAlad(7, 0, 1), Result::OK);
            yield(round % 20);
            if (round % 2 == 0) {
                EXPECT_EQ(service.exclusiveModeEnter(7, 1), Result::OK);
                EXPECT_EQ(service.exclusiveModeExit(7, 0), Result::OK);
            }
            EXPECT_EQ(service.setAlad(7, 0, 0), Result::OK);
            const Lines messages = composerCalls();
            EXPECT_GE(std::count(messages.begin(), messages.end(), kOff), 3) << "each switch ended with it";
            stepped = stepped || std::any_of(messages.begin(), messages.end(), [](const std::string& message) {
                          return message.rfind("composer setAladParams(0, 1, 14: ", 0) == 0;
                      });
        }
        over = true;
        for (std::thread* const thread : {&events, &feed, &handles}) thread->join();
        EXPECT_EQ(stepped, deadlinesPass) << "the workers had something to do";
    }
}

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
