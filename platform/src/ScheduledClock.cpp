// SPDX-License-Identifier: Apache-2.0
#include <platform/ScheduledClock.h>

#include <algorithm>
#include <cerrno>
#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <utility>

#if defined(__has_feature)
#if __has_feature(thread_sanitizer)
#define __SANITIZE_THREAD__ 1
#endif
#endif
#ifdef __SANITIZE_THREAD__
extern "C" {
void AnnotateIgnoreReadsBegin(const char* file, int line);
void AnnotateIgnoreReadsEnd(const char* file, int line);
void AnnotateIgnoreWritesBegin(const char* file, int line);
void AnnotateIgnoreWritesEnd(const char* file, int line);
void AnnotateIgnoreSyncBegin(const char* file, int line);
void AnnotateIgnoreSyncEnd(const char* file, int line);
}
#endif

namespace platform {

namespace {

// While it lives, the thread sanitizer does not see what the thread does. So the clock's hand-overs do not order the
// threads' accesses to memory, and those that nothing else orders are found.
struct Hidden {
#ifdef __SANITIZE_THREAD__
    Hidden() {
        AnnotateIgnoreSyncBegin(__FILE__, __LINE__);
        AnnotateIgnoreReadsBegin(__FILE__, __LINE__);
        AnnotateIgnoreWritesBegin(__FILE__, __LINE__);
    }
    ~Hidden() {
        AnnotateIgnoreWritesEnd(__FILE__, __LINE__);
        AnnotateIgnoreReadsEnd(__FILE__, __LINE__);
        AnnotateIgnoreSyncEnd(__FILE__, __LINE__);
    }
#else
    Hidden() {}
#endif
    Hidden(const Hidden&) = delete;
    Hidden& operator=(const Hidden&) = delete;
};

}  // namespace

// A thread of the clock.
struct ScheduledClock::Scheduled {
    explicit Scheduled(ScheduledClock* owner) : clock(owner) { sem_init(&turn, 0, 0); }
    ~Scheduled() { sem_destroy(&turn); }
    Scheduled(const Scheduled&) = delete;
    Scheduled& operator=(const Scheduled&) = delete;

    void awaitTurn() {
        int error = 0;
        do error = sem_wait(&turn);
        while (error != 0);  // a signal ended it
    }

    static thread_local Scheduled* caller;  // null on other threads

    ScheduledClock* const clock;
    pthread_t id{};  // of a thread that the clock started
    uint64_t priority = 0;
    sem_t turn{};
    // What it waits for, if it does.
    pthread_mutex_t* mutex = nullptr;      // that was locked
    const Scheduled* joined = nullptr;     // that has not ended
    const Condition* condition = nullptr;  // notified "before" times when the wait began
    uint64_t before = 0;
    Duration deadline = Duration::min();
    bool hasEnded = false;
};

thread_local ScheduledClock::Scheduled* ScheduledClock::Scheduled::caller = nullptr;

ScheduledClock::ScheduledClock(uint64_t scheduleSeed, uint64_t length) : seed(scheduleSeed), random(scheduleSeed) {
    for (auto* const changes : {&priorityChanges, &timeChanges}) {
        for (uint64_t& change : *changes) change = random() % length;
    }
    Scheduled::caller = &add();
}

ScheduledClock::~ScheduledClock() {
    Scheduled::caller = nullptr;
}

ScheduledClock* ScheduledClock::ofCaller() {
    return Scheduled::caller == nullptr ? nullptr : Scheduled::caller->clock;
}

Clock::Duration ScheduledClock::now() {
    const Hidden hidden;
    step();
    return time;
}

void ScheduledClock::sleepFor(Duration duration) {
    const Hidden hidden;
    waitFor(time + duration, nullptr);
    step();
}

void ScheduledClock::waitUntil(Condition& condition, Lock& lock, Duration deadline) {
    waitFor(deadline, &condition);
    unlock(lock.mutex().mutex);
    waitFor(Duration::min(), nullptr);
    this->lock(lock.mutex().mutex);
}

// From the next step on, until it is called again.
void ScheduledClock::waitFor(Duration deadline, const Condition* condition) {
    const Hidden hidden;
    Scheduled& caller = *Scheduled::caller;
    caller.deadline = deadline;
    caller.condition = condition;
    if (condition != nullptr) caller.before = condition->notifications();
}

std::unique_ptr<Thread> ScheduledClock::startThread(std::function<void()> body) {
    Scheduled* added = nullptr;
    {
        const Hidden hidden;
        added = &add();
    }
    auto thread = Thread::start([this, added, body = std::move(body)]() mutable {
        Scheduled::caller = added;
        {
            const Hidden hidden;
            added->awaitTurn();
        }
        body();
        body = nullptr;
        const Hidden hidden;
        added->hasEnded = true;
        sem_post(&choose().turn);
    });
    const Hidden hidden;
    if (thread == nullptr) {
        threads.pop_back();
        return nullptr;
    }
    added->id = thread->id();
    step();
    return thread;
}

void ScheduledClock::join(Thread& thread) {
    const auto isIt = [&thread](const Scheduled& each) { return pthread_equal(each.id, thread.id()) != 0; };
    {
        const Hidden hidden;
        Scheduled::caller->joined = &*std::find_if(threads.begin(), threads.end(), isIt);
        step();
        Scheduled::caller->joined = nullptr;
    }
    thread.join();
    const Hidden hidden;
    threads.remove_if(isIt);
}

// The mutex itself is locked too, so that the thread sanitizer knows what it guards.
void ScheduledClock::lock(pthread_mutex_t& mutex) {
    int error = 0;
    do {
        {
            const Hidden hidden;
            step();
            Scheduled::caller->mutex = &mutex;  // if it is locked
        }
        error = pthread_mutex_trylock(&mutex);
    } while (error == EBUSY);
    if (error != 0) fail("a mutex is used after its end");
    const Hidden hidden;
    Scheduled::caller->mutex = nullptr;
}

void ScheduledClock::unlock(pthread_mutex_t& mutex) {
    pthread_mutex_unlock(&mutex);
    const Hidden hidden;
    for (Scheduled& thread : threads) {
        if (thread.mutex == &mutex) thread.mutex = nullptr;
    }
    step();
}

ScheduledClock::Scheduled& ScheduledClock::add() {
    Scheduled& added = threads.emplace_back(this);
    added.priority = kChanges + random() / 2;
    return added;
}

void ScheduledClock::step() {
    ++stepCount;
    Scheduled& caller = *Scheduled::caller;
    for (size_t i = 0; i < kChanges; ++i) {
        if (priorityChanges[i] == stepCount) caller.priority = i;
        if (timeChanges[i] == stepCount) passTime();
    }
    sem_post(&choose().turn);
    caller.awaitTurn();
}

bool ScheduledClock::canRun(const Scheduled& thread) const {
    if (thread.hasEnded || thread.mutex != nullptr) return false;
    if (thread.joined != nullptr) return thread.joined->hasEnded;
    if (thread.condition != nullptr && thread.condition->notifications() != thread.before) return true;
    return thread.deadline <= time;
}

ScheduledClock::Scheduled& ScheduledClock::choose() {
    while (true) {
        Scheduled* best = nullptr;
        for (Scheduled& thread : threads) {
            if (canRun(thread) && (best == nullptr || thread.priority > best->priority)) best = &thread;
        }
        if (best != nullptr) return *best;
        const Duration before = time;
        if (!passTime()) fail("every thread waits");
        idle += time - before;
    }
}

// To the earliest deadline. False if no thread waits for one.
bool ScheduledClock::passTime() {
    Duration earliest = Duration::max();
    for (const Scheduled& thread : threads) {
        if (thread.deadline > time) earliest = std::min(earliest, thread.deadline);
    }
    if (earliest == Duration::max()) return false;
    time = earliest;
    return true;
}

void ScheduledClock::fail(const char* what) const {
    fprintf(stderr, "schedule %" PRIu64 ": %s\n", seed, what);
    abort();
}

}  // namespace platform
