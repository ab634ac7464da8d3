// SPDX-License-Identifier: Apache-2.0
// Time. The library reads time, waits, starts and joins threads only through the process's clock, so that the host can
// use a virtual clock.
#pragma once

#include <chrono>
#include <functional>
#include <memory>

#include <platform/Mutex.h>
#include <platform/Thread.h>

namespace platform {

// Every operation may be called from any thread, unless a clock says otherwise.
class Clock {
public:
    using Duration = std::chrono::nanoseconds;

    virtual ~Clock() = default;

    // Time since an arbitrary but fixed start. Never goes back.
    virtual Duration now() = 0;

    // Returns when now() has reached its present value plus duration.
    virtual void sleepFor(Duration duration) = 0;

    // Waits, with lock released, until condition is notified or now() reaches deadline. A spurious wake-up may end the
    // wait too.
    virtual void waitUntil(Condition& condition, Lock& lock, Duration deadline) = 0;

    // Runs body on a new thread. Null if the thread cannot be started.
    virtual std::unique_ptr<Thread> startThread(std::function<void()> body) = 0;

    // Waits for the end of a thread that startThread returned.
    virtual void join(Thread& thread) = 0;
};

// The clock in use: the monotonic clock unless setClock replaced it.
Clock& clock();

// The monotonic clock. It is never destroyed: threads may use it while the process exits.
Clock& realClock();

// Replaces the clock in use; null restores the monotonic clock. Call it while no thread uses the clock. The caller owns
// other and keeps it alive while it is in use.
void setClock(Clock* other);

}  // namespace platform
