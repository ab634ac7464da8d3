// SPDX-License-Identifier: Apache-2.0
// A virtual clock that decides which thread runs.
#pragma once

#include <semaphore.h>

#include <array>
#include <list>
#include <random>

#include <platform/Clock.h>

namespace platform {

// Runs one thread at a time. Each call of a Mutex or of the clock is a step, at which it decides which thread runs
// next: probabilistic concurrency testing (S. Burckhardt, P. Kothari, M. Musuvathi, S. Nagarakatte: A Randomized
// Scheduler with Probabilistic Guarantees of Finding Bugs, ASPLOS 2010). Each thread has a random priority, and of
// those that can run the one with the highest priority does. At a few random steps the priority of the running thread
// falls below all others, or the earliest deadline is reached. Otherwise time passes only while every thread waits. The
// order depends on the seed alone.
//
// A notification has its effect when the condition's mutex is unlocked, so it is not a step.
//
// Its threads are the one that creates it and those that it starts. Only they use it, and the mutexes that they use;
// they block nowhere else. All are joined before it is destroyed, by the thread that created it. A deadlock, and the
// use of a mutex after its end, end the process with a message.
class ScheduledClock final : public Clock {
public:
    // The random steps are among the first length ones.
    ScheduledClock(uint64_t seed, uint64_t length);
    ~ScheduledClock() override;

    Duration now() override;
    void sleepFor(Duration duration) override;
    void waitUntil(Condition& condition, Lock& lock, Duration deadline) override;
    std::unique_ptr<Thread> startThread(std::function<void()> body) override;
    void join(Thread& thread) override;

    uint64_t steps() const { return stepCount; }
    // Threads that it started and that are not joined.
    size_t unjoined() const { return threads.size() - 1; }
    // Time that passed because every thread waited.
    Duration idleTime() const { return idle; }

    // The clock that schedules the calling thread, or null. For Mutex, as the next two.
    static ScheduledClock* ofCaller();
    void lock(pthread_mutex_t& mutex);
    void unlock(pthread_mutex_t& mutex);

private:
    struct Scheduled;

    Scheduled& add();
    bool canRun(const Scheduled& thread) const;
    Scheduled& choose();
    bool passTime();
    void step();
    void waitFor(Duration deadline, const Condition* condition);
    [[noreturn]] void fail(const char* what) const;

    static constexpr size_t kChanges = 12;  // of each kind

    const uint64_t seed;
    std::mt19937_64 random;
    std::array<uint64_t, kChanges> priorityChanges{};  // steps; the change at position i sets priority i
    std::array<uint64_t, kChanges> timeChanges{};      // steps
    std::list<Scheduled> threads;                      // used only by the thread that runs, as all members
    uint64_t stepCount = 0;
    Duration time{0};
    Duration idle{0};
};

}  // namespace platform
