// Time. The library takes time, waits and starts its threads through the process's clock alone, so that a desk can put
// a clock of its own in place of the real one.
#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

namespace platform {

// Every operation may be called from any thread.
class Clock {
public:
    using Duration = std::chrono::nanoseconds;

    virtual ~Clock() = default;

    // Time since a start that is arbitrary but fixed; never goes back.
    virtual Duration now() = 0;

    // Returns when now() has reached its present value plus duration.
    virtual void sleepFor(Duration duration) = 0;

    // Waits on condition, releasing lock meanwhile, until a notification, until now() has reached deadline, or for no
    // reason at all.
    virtual void waitUntil(std::condition_variable& condition, std::unique_lock<std::mutex>& lock,
                           Duration deadline) = 0;

    // Runs body on a thread of its own, which has to be joined. Throws std::system_error when none can be started.
    virtual std::thread startThread(std::function<void()> body) = 0;
};

// The clock in force: the monotonic one unless setClock gave another.
Clock& clock();

// The monotonic clock.
Clock& realClock();

// Puts other in force, or the monotonic clock again when other is null. Call it while no thread uses the clock; other
// stays the caller's and has to outlive its use.
void setClock(Clock* other);

}  // namespace platform
