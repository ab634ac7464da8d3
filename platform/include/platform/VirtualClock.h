// A clock that stands still until it is stepped.
#pragma once

#include <list>

#include <platform/Clock.h>

namespace platform {

// Time passes in advance() only. The threads that startThread started take turns with it: advance() goes from one
// deadline to the next, wakes the one thread that waits for it and goes on when every such thread waits again or has
// ended. So a minute takes as long as what happens in it, and always happens in the same order.
//
// One thread, the one that made the clock, steps it; every thread started here has ended before the clock does.
class VirtualClock final : public Clock {
public:
    Duration now() override;

    // On a thread that was not started here this is advance(duration).
    void sleepFor(Duration duration) override;

    // Only for threads that were started here.
    void waitUntil(std::condition_variable& condition, std::unique_lock<std::mutex>& lock, Duration deadline) override;

    std::thread startThread(std::function<void()> body) override;

    // Lets duration pass, up to and including what is due at its end.
    void advance(Duration duration);

    // Returns when every thread started here waits or has ended; no time passes.
    void settle();

private:
    struct Waiter {
        Duration deadline;
        std::condition_variable* condition;
        std::mutex* conditionMutex;
        bool due;
    };

    void block(Waiter& waiter, std::unique_lock<std::mutex>& lock);
    std::list<Waiter*>::iterator earliest();

    std::mutex mutex;  // guards all below; taken after a waiter's own mutex, never before
    std::condition_variable idle;
    Duration time{0};
    int running = 0;             // threads started here that neither wait nor have ended
    std::list<Waiter*> waiters;  // in the order in which they began to wait
};

}  // namespace platform
