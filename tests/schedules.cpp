// SPDX-License-Identifier: Apache-2.0
// ALAD switched on and off in many schedules: schedules [--seed FIRST] [--schedules COUNT]
// Each schedule has a seed, FIRST the first one. "--seed N --schedules 1" repeats the one that failed. With the thread
// sanitizer it finds races too.
#include <android/log.h>
#include <platform/ScheduledClock.h>

#include <cinttypes>
#include <cstdlib>
#include <cstring>
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
    Schedule(simulator::Phone& onPhone, uint64_t itsSeed) : phone(onPhone), seed(itsSeed), clock(seed, kLength) {
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

}  // namespace

int main(int argc, char** argv) {
    uint64_t seed = 1;
    uint64_t count = 1000;
    for (int i = 1; i < argc; i += 2) {
        const bool isSeed = strcmp(argv[i], "--seed") == 0;
        if (i + 1 == argc || (!isSeed && strcmp(argv[i], "--schedules") != 0)) {
            fprintf(stderr, "usage: schedules [--seed FIRST] [--schedules COUNT]\n");
            return 2;
        }
        (isSeed ? seed : count) = strtoull(argv[i + 1], nullptr, 10);
    }
    __android_log_set_minimum_priority(ANDROID_LOG_SILENT);
    simulator::Phone phone(simulator::Phone::Start::EMPTY);
    phone.sensors().setDelivering(false);
    phone.closed().getAGTMLevel = [](int lux) { return lux / 3000; };
    uint64_t steps = 0;
    uint64_t messages = 0;
    for (uint64_t i = 0; i < count; ++i) {
        Schedule schedule(phone, seed + i);
        schedule.run();
        steps += schedule.steps();
        messages += schedule.messages;
    }
    printf("%" PRIu64 " schedules from seed %" PRIu64 ": %" PRIu64 " steps, %" PRIu64 " messages\n", count, seed, steps,
           messages);
    if (messages > 5 * count || count < 100) return 0;
    fprintf(stderr, "schedules: the tone curve was hardly ever on\n");
    return 1;
}
