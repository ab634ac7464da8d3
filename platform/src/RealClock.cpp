// SPDX-License-Identifier: Apache-2.0
// The monotonic clock. Compiled on the host and on the phone.
#include <platform/Clock.h>

#include <thread>
#include <utility>

namespace platform {

namespace {

class RealClock final : public Clock {
public:
    // steady_clock is CLOCK_MONOTONIC, as Condition is.
    Duration now() override { return std::chrono::steady_clock::now().time_since_epoch(); }

    void sleepFor(Duration duration) override { std::this_thread::sleep_for(duration); }

    void waitUntil(Condition& condition, Lock& lock, Duration deadline) override {
        condition.waitUntil(lock, deadline);
    }

    std::unique_ptr<Thread> startThread(std::function<void()> body) override { return Thread::start(std::move(body)); }

    void join(Thread& thread) override { thread.join(); }
};

}  // namespace

Clock& realClock() {
    static RealClock* const kInstance = new RealClock;
    return *kInstance;
}

}  // namespace platform
