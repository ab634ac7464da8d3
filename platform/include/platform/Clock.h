// Time. The library takes time, waits, starts and joins its threads through the process's clock alone, so that a desk
// can put a clock of its own in place of the real one.
#pragma once

#include <chrono>
#include <functional>
#include <thread>

#include <platform/Mutex.h>

namespace platform {

// Every operation may be called from any thread, unless a clock says otherwise.
class Clock {
public:
    using Duration = std::chrono::nanoseconds;

    virtual ~Clock() = default;

    // Time since a start that is arbitrary but fixed; never goes back.
    virtual Duration now() = 0;

    // Returns when now() has reached its present value plus duration.
    virtual void sleepFor(Duration duration) = 0;

    // Waits, releasing lock meanwhile, until condition is notified or now() has reached deadline.
    virtual void waitUntil(Condition& condition, Lock& lock, Duration deadline) = 0;

    // Runs body on a thread of its own. Throws std::system_error when none can be started.
    virtual std::thread startThread(std::function<void()> body) = 0;

    // Waits for the end of a thread that startThread started.
    virtual void join(std::thread& thread) = 0;
};

// The clock in force: the monotonic one unless setClock gave another.
Clock& clock();

// The monotonic clock.
Clock& realClock();

// Puts other in force, or the monotonic clock again when other is null. Call it while no thread uses the clock; other
// stays the caller's and has to outlive its use.
void setClock(Clock* other);

}  // namespace platform
