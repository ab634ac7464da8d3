// A clock that stands still until it is stepped.
#pragma once

#include <list>
#include <set>

#include <platform/Clock.h>

namespace platform {

// Time passes in advance() and join() only. The threads that startThread started take turns with them: the clock goes
// from one deadline to the next, wakes the one thread that waits for it and goes on when every such thread waits again
// or has ended. So a minute takes as long as what happens in it, and always happens in the same order.
//
// One thread steps it: the one that starts the others. Every thread started here has been joined before the clock goes.
class VirtualClock final : public Clock {
public:
    Duration now() override;

    // On a thread that was not started here this is advance(duration).
    void sleepFor(Duration duration) override;

    // Only for threads that were started here.
    void waitUntil(Condition& condition, Lock& lock, Duration deadline) override;

    std::thread startThread(std::function<void()> body) override;

    // Lets time pass until the thread ends. Not for threads that were started here.
    void join(std::thread& thread) override;

    // Lets duration pass, up to and including what is due at its end.
    void advance(Duration duration);

    // Returns when every thread started here waits or has ended; no time passes.
    void settle();

private:
    struct Waiter {
        Duration deadline;
        Condition& condition;
        Mutex& conditionMutex;
        uint64_t before;  // notifications of the condition when the wait began
        bool due;         // its time has come; guarded by mutex
    };

    void changeRunning(int change);
    bool isIdle() PLATFORM_REQUIRES(mutex);
    bool isAlive(std::thread::id id);
    std::list<Waiter*>::iterator earliest() PLATFORM_REQUIRES(mutex);
    // Goes to the earliest deadline, unless it is after end or there is none, and wakes the thread that waits for it.
    // Called while every thread started here waits or has ended.
    bool step(Duration end) PLATFORM_EXCLUDES(mutex);

    Mutex mutex;  // taken after the mutex of a waiter's condition, never before
    Condition idle;
    Duration time PLATFORM_GUARDED_BY(mutex){0};
    int running PLATFORM_GUARDED_BY(mutex) = 0;             // threads started here that neither wait nor have ended
    std::list<Waiter*> waiters PLATFORM_GUARDED_BY(mutex);  // in the order in which they began to wait
    std::set<std::thread::id> alive PLATFORM_GUARDED_BY(mutex);  // threads started here that have begun and not ended
};

}  // namespace platform
