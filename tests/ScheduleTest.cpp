// SPDX-License-Identifier: Apache-2.0
// The order in which threads run: decided by ScheduledClock.
#include <android/log.h>
#include <platform/ScheduledClock.h>

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <cinttypes>
#include <cstdlib>
#include <optional>
#include <set>
#include <string>

#include "service/DisplayControlImpl.h"
#include "simulator/Phone.h"

namespace {

using namespace std::chrono_literals;
using Service = ::vendor::kov::hardware::display_control::V1_0::implementation::DisplayControlImpl;
using simulator::ComposerOperation;

constexpr uint64_t kLength = 500;  // steps
constexpr auto kBlock = 30ms;      // how long the composer blocks
constexpr auto kPause = 20ms;      // after a message of a ramp

// One schedule: a client switches ALAD on and off while events of the light sensor arrive and the composer blocks.
class Schedule {
public:
    Schedule(simulator::Phone& onPhone, uint64_t scheduleSeed)
        : phone(onPhone), seed(scheduleSeed), clock(seed, kLength) {
        platform::setClock(&clock);
        phone.composer().onCall([this](ComposerOperation operation) {
            const bool blocks = (static_cast<uint64_t>(clock.now() / kPause) + seed) % 3 == 0;
            if (operation == ComposerOperation::SET_ALAD_PARAMS && blocks) clock.sleepFor(kBlock);
        });
        phone.observe([this](const simulator::Event& event) {
            const auto* const call = std::get_if<simulator::ComposerCall>(&event.what);
            if (call == nullptr || call->operation != ComposerOperation::SET_ALAD_PARAMS) return;
            ++messages;
            require(mayBeOn && !hasEnded, "a message after the off message");
            isOff = call->enable == 0U;
            hasEnded = pthread_equal(pthread_self(), client) != 0;  // it sends the off message, the worker all others
        });
    }
    ~Schedule() {
        phone.observe({});
        phone.composer().onCall({});
        platform::setClock(&phone.clock());
    }

    void run() {
        std::mt19937_64 random(seed);
        service.init();
        const auto light = clock.startThread([this] { bringLight(); });
        for (int round = 0; round < 4; ++round) {
            service.exclusiveModeExit(7, 1).isOk();
            mayBeOn = true;
            hasEnded = false;
            service.setAlad(7, 0, 1).isOk();
            constexpr platform::Clock::Duration kTimes[] = {0ms, 990ms, 1s, 1010ms, 1050ms, 2100ms};
            clock.sleepFor(kTimes[random() % std::size(kTimes)]);
            const auto idle = clock.idleTime();
            (random() % 2 == 0 ? service.setAlad(7, 0, 0) : service.exclusiveModeEnter(7, 1)).isOk();
            mayBeOn = false;
            require(clock.idleTime() - idle <= kPause + 2 * kBlock, "the switch waits for a sample");
            require(clock.unjoined() == 1, "the worker is not joined");
            const auto display = *phone.composer().stateOf(0);
            require(isOff && !display.aladEnabled && display.toneCurve.empty(), "the tone curve is on");
        }
        service.deInit();
        clock.join(*light);
    }

    uint64_t steps() const { return clock.steps(); }
    uint64_t messages = 0;

private:
    void bringLight() {
        constexpr float kLights[] = {9000, 20000, 15000, 100, 6000, 100, 12000, 30000};
        for (size_t i = 0; i < 8; ++i) {
            phone.sensors().deliver(kLights[(i + seed) % std::size(kLights)]);
            clock.sleepFor(700ms);
        }
    }
    void require(bool holds, const char* what) const {
        if (holds) return;
        fprintf(stderr, "schedule %" PRIu64 ": %s\n", seed, what);
        abort();
    }

    simulator::Phone& phone;
    const uint64_t seed;
    platform::ScheduledClock clock;
    Service service;
    const pthread_t client = pthread_self();
    bool mayBeOn = false;
    bool hasEnded = true;
    bool isOff = true;
};

uint64_t numberFrom(const char* variable, uint64_t usual) {
    const char* const text = getenv(variable);
    return text == nullptr ? usual : strtoull(text, nullptr, 10);
}

// SCHEDULE_SEED is the first seed, SCHEDULES the number of schedules. A failure names its seed; SCHEDULES=1 repeats it.
// With the thread sanitizer this finds races too.
TEST(Schedules, AladSwitchesOffInEveryOne) {
    const uint64_t first = numberFrom("SCHEDULE_SEED", 1);
    const uint64_t count = numberFrom("SCHEDULES", 1000);
    __android_log_set_minimum_priority(ANDROID_LOG_SILENT);
    simulator::Phone phone(simulator::Phone::Start::EMPTY);
    phone.sensors().setDelivering(false);
    phone.closed().getAGTMLevel = [](int lux) { return lux / 3000; };
    uint64_t steps = 0;
    uint64_t messages = 0;
    for (uint64_t i = 0; i < count; ++i) {
        Schedule schedule(phone, first + i);
        schedule.run();
        steps += schedule.steps();
        messages += schedule.messages;
    }
    __android_log_set_minimum_priority(ANDROID_LOG_DEFAULT);
    printf("%" PRIu64 " schedules from seed %" PRIu64 ": %" PRIu64 " steps, %" PRIu64 " messages\n", count, first,
           steps, messages);
    EXPECT_TRUE(messages > 5 * count || count < 100) << "the tone curve was hardly ever on";
}

// Letters of many threads, in the order of the clock, which the thread sanitizer does not see.
class Letters {
public:
    void operator+=(char letter) { letters[count++] = letter; }
    std::string text() const { return {letters.begin(), letters.begin() + count}; }

private:
    std::array<std::atomic<char>, 32> letters{};
    std::atomic<size_t> count{0};
};

// What three threads do, a letter each, in the order of one schedule; then seconds and steps.
std::string orderOf(uint64_t seed) {
    platform::ScheduledClock clock(seed, 40);
    platform::Mutex mutex;
    platform::Condition changed;
    Letters order;
    int made = 0;
    const auto maker = clock.startThread([&] {
        for (const auto pause : {2s, 3s}) {
            clock.sleepFor(pause);
            order += 'm';
            const platform::Lock lock(mutex);
            order += static_cast<char>('0' + ++made);
            changed.notifyOne();
        }
    });
    const auto taker = clock.startThread([&] {
        platform::Lock lock(mutex);
        for (const auto deadline : {1s, 4s, 9s}) {
            const auto before = changed.notifications();
            clock.waitUntil(changed, lock, deadline);
            order += changed.notifications() != before ? 'w' : clock.now() >= deadline ? 'd' : '?';
        }
    });
    clock.sleepFor(2s);
    for (int i = 0; i < 3; ++i) {
        order += '(';
        const platform::Lock lock(mutex);
        order += ')';
    }
    clock.join(*maker);
    EXPECT_EQ(clock.unjoined(), 1U);
    clock.join(*taker);
    EXPECT_EQ(clock.unjoined(), 0U);
    const auto seconds = clock.now() / 1s;
    return order.text() + " " + std::to_string(seconds) + " " + std::to_string(clock.idleTime() / 1s) + " " +
           std::to_string(clock.steps());
}

TEST(ScheduledClock, TheOrderDependsOnTheSeedAlone) {
    std::set<std::string> orders;
    for (uint64_t seed = 0; seed < 300; ++seed) orders.insert(orderOf(seed));
    EXPECT_EQ(orders.size(), 289U);
    EXPECT_EQ(orderOf(1), "m(1)()()wdmd2 12 0 29");
    EXPECT_EQ(orderOf(2), "(md)()(1)m2wd 9 5 30");
    EXPECT_EQ(orderOf(3), "()()m1dm2w()d 9 2 28");
}

TEST(ScheduledClockDeathTest, ADeadlockAndAMutexAfterItsEndAreFound) {
    const auto lockInAnyOrder = [](uint64_t seed) {
        platform::ScheduledClock clock(seed, 10);
        platform::Mutex a;
        platform::Mutex b;
        const auto lockBoth = [](platform::Mutex& first, platform::Mutex& second) {
            const platform::Lock outer(first);
            const platform::Lock inner(second);
        };
        const auto other = clock.startThread([&] { lockBoth(b, a); });
        lockBoth(a, b);
        clock.join(*other);
    };
    EXPECT_DEATH(for (uint64_t seed = 0; seed < 100; ++seed) lockInAnyOrder(seed), "schedule .*: every thread waits");
    EXPECT_DEATH(
        {
            const platform::ScheduledClock clock(5, 10);
            std::optional<platform::Mutex> mutex(std::in_place);
            platform::Mutex& ended = *mutex;
            mutex.reset();
            const platform::Lock lock(ended);
        },
        "schedule 5: a mutex is used after its end");
}

}  // namespace
