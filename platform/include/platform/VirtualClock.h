// SPDX-License-Identifier: Apache-2.0
// A clock whose time passes only when it is stepped.
#pragma once

#include <list>
#include <set>

#include <platform/Clock.h>

namespace platform {

// Time passes only in advance() and join(). They step from one deadline to the next: each step wakes the thread that
// waits for the deadline, and ends when all threads of this clock wait again or have ended. So a minute of virtual time
// takes only as long as its work, and the order of events is always the same.
//
// One thread steps the clock: the one that starts the others. All threads of the clock are joined before it is
// destroyed.
class VirtualClock final : public Clock {
public:
    Duration now() override;

    // On a thread that this clock did not start: the same as advance(duration).
    void sleepFor(Duration duration) override;

    // Only for threads that this clock started.
    void waitUntil(Condition& condition, Lock& lock, Duration deadline) override;

    std::unique_ptr<Thread> startThread(std::function<void()> body) override;

    // While refused, startThread returns null, as on a phone that has no threads left.
    void refuseThreads(bool refused) { threadsRefused = refused; }

    // Lets time pass until the thread ends. Not for threads that this clock started.
    void join(Thread& thread) override;

    // Lets duration pass, and wakes threads whose deadline is at its end too.
    void advance(Duration duration);

    // Returns when every thread of this clock waits or has ended. No time passes.
    void settle();

    // Whether a thread that this clock started has not ended.
    bool hasThreads() PLATFORM_EXCLUDES(mutex);

private:
    struct Waiter {
        Duration deadline;
        Condition& condition;
        Mutex& conditionMutex;
        uint64_t before;  // notifications of the condition when the wait began
        bool due;         // the deadline is reached; guarded by VirtualClock::mutex
    };

    // As settle(), but a thread that begins to wait while the others wait for longer moves time to its deadline itself,
    // up to end: as step() would, without switching threads.
    void settleUntil(Duration end) PLATFORM_EXCLUDES(mutex);
    // Whether the calling thread, which is one of this clock, may do so.
    bool isNext(Duration deadline) PLATFORM_REQUIRES(mutex);
    bool isIdle() PLATFORM_REQUIRES(mutex);
    bool isAlive(pthread_t id);
    std::list<Waiter*>::iterator earliest() PLATFORM_REQUIRES(mutex);
    // Moves time to the earliest deadline and wakes the thread that waits for it. False if no deadline remains until
    // end. Called while every thread of this clock waits or has ended.
    bool step(Duration end) PLATFORM_EXCLUDES(mutex);

    Mutex mutex;  // taken after the mutex of a waiter's condition, never before
    Condition idle;
    Duration time PLATFORM_GUARDED_BY(mutex){0};
    int running PLATFORM_GUARDED_BY(mutex) = 0;             // threads of this clock that neither wait nor have ended
    std::list<Waiter*> waiters PLATFORM_GUARDED_BY(mutex);  // in the order in which they began to wait
    std::set<pthread_t> alive PLATFORM_GUARDED_BY(mutex);   // threads of this clock that have not ended
    Duration horizon PLATFORM_GUARDED_BY(mutex) = Duration::min();  // up to which a thread may move time
    bool threadsRefused = false;
};

}  // namespace platform
