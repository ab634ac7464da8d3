// SPDX-License-Identifier: Apache-2.0
// What the worker of the ambient-light display does while the light stays as it is: a second of its clock.
#include <benchmark/benchmark.h>
#include <platform/VirtualClock.h>

#include <chrono>
#include <optional>
#include <utility>

#include "alad/DisplayAlad.h"
#include "bench/Allocations.h"
#include "bench/QuietLog.h"
#include "simulator/Phone.h"

namespace bench {
namespace {

using namespace std::chrono_literals;
using vendor::kov::hardware::display_control::V1_0::implementation::DisplayAlad;

// The phone's clock, which counts the wake-ups of threads and what they allocate between them.
class CountingClock final : public platform::Clock {
public:
    explicit CountingClock(platform::VirtualClock& phones) : clock(phones) {}

    Duration now() override { return clock.now(); }
    void sleepFor(Duration duration) override { clock.sleepFor(duration); }
    void waitUntil(platform::Condition& condition, platform::Lock& lock, Duration deadline) override {
        cycle.reset();
        clock.waitUntil(condition, lock, deadline);
        ++wakeUps;
        cycle.emplace();
    }
    std::unique_ptr<platform::Thread> startThread(std::function<void()> body) override {
        return clock.startThread(std::move(body));
    }
    void join(platform::Thread& thread) override { clock.join(thread); }

    platform::VirtualClock& clock;
    uint64_t wakeUps = 0;  // to be read while the threads wait

private:
    std::optional<CountedAllocations> cycle;
};

void idleWorker(benchmark::State& state, int32_t lux) {
    constexpr auto kSettled = 60s;  // of the first cycles, and a ramp if there is one
    const QuietLog quiet;
    simulator::Phone phone(simulator::Phone::Start::EMPTY);
    phone.sensors().setDelivering(false);
    CountingClock clock(phone.clock());
    platform::setClock(&clock);
    DisplayAlad alad(&phone.composer());
    if (alad.enable() != 0) state.SkipWithError("the ambient-light display could not be switched on");
    alad.notifyData(lux);
    clock.clock.advance(kSettled);

    const uint64_t wakeUps = clock.wakeUps;
    const uint64_t allocations = allocationsCounted();
    for (auto _ : state) clock.clock.advance(1s);
    state.counters["wakeUps"] =
        benchmark::Counter(static_cast<double>(clock.wakeUps - wakeUps), benchmark::Counter::kAvgIterations);
    state.counters["allocations"] =
        benchmark::Counter(static_cast<double>(allocationsCounted() - allocations), benchmark::Counter::kAvgIterations);

    alad.disable();
}

BENCHMARK_CAPTURE(idleWorker, curve_off, 300)->Name("alad/idle/curve off");
BENCHMARK_CAPTURE(idleWorker, curve_on, 20000)->Name("alad/idle/curve on");

}  // namespace
}  // namespace bench
