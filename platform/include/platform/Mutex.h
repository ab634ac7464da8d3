// SPDX-License-Identifier: Apache-2.0
// Locks that Clang's thread-safety analysis checks: access to a guarded member without its mutex fails the build.
#pragma once

#include <pthread.h>

#include <atomic>
#include <chrono>
#include <cstdint>

#if defined(__clang__)
#define PLATFORM_THREAD_ANNOTATION(attribute) __attribute__((attribute))
#else
#define PLATFORM_THREAD_ANNOTATION(attribute)
#endif
#define PLATFORM_CAPABILITY(name) PLATFORM_THREAD_ANNOTATION(capability(name))
#define PLATFORM_SCOPED_CAPABILITY PLATFORM_THREAD_ANNOTATION(scoped_lockable)
#define PLATFORM_GUARDED_BY(mutex) PLATFORM_THREAD_ANNOTATION(guarded_by(mutex))
#define PLATFORM_ACQUIRE(...) PLATFORM_THREAD_ANNOTATION(acquire_capability(__VA_ARGS__))
#define PLATFORM_RELEASE(...) PLATFORM_THREAD_ANNOTATION(release_capability(__VA_ARGS__))
#define PLATFORM_REQUIRES(...) PLATFORM_THREAD_ANNOTATION(requires_capability(__VA_ARGS__))
#define PLATFORM_EXCLUDES(...) PLATFORM_THREAD_ANNOTATION(locks_excluded(__VA_ARGS__))

namespace platform {

// Locked only through a Lock.
class PLATFORM_CAPABILITY("mutex") Mutex {
public:
    Mutex() = default;
    ~Mutex() { pthread_mutex_destroy(&mutex); }
    Mutex(const Mutex&) = delete;
    Mutex& operator=(const Mutex&) = delete;

private:
    friend class Lock;
    friend class Condition;
    friend class ScheduledClock;

    // On the host a ScheduledClock may decide when the calling thread continues.
    void lock();
    void unlock();

    pthread_mutex_t mutex = PTHREAD_MUTEX_INITIALIZER;
};

// Holds a mutex until the end of the scope.
class PLATFORM_SCOPED_CAPABILITY Lock {
public:
    explicit Lock(Mutex& mutex) PLATFORM_ACQUIRE(mutex) : heldMutex(mutex) { heldMutex.lock(); }
    ~Lock() PLATFORM_RELEASE() { heldMutex.unlock(); }
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;

    Mutex& mutex() const { return heldMutex; }

private:
    Mutex& heldMutex;
};

// A condition variable on the monotonic clock. It counts its notifications, so that the virtual clock can tell them
// from spurious wake-ups. It belongs to one mutex, which every caller holds. To wait, call Clock::waitUntil.
class Condition {
public:
    Condition();
    ~Condition() { pthread_cond_destroy(&condition); }
    Condition(const Condition&) = delete;
    Condition& operator=(const Condition&) = delete;

    void notifyOne() {
        ++count;
        pthread_cond_signal(&condition);
    }
    void notifyAll() {
        ++count;
        pthread_cond_broadcast(&condition);
    }

    // Number of notifications so far. May be called without the mutex.
    uint64_t notifications() const { return count; }

    // Return on a notification or spuriously; waitUntil also returns at the deadline, a time of CLOCK_MONOTONIC.
    void wait(Lock& lock) { pthread_cond_wait(&condition, &lock.mutex().mutex); }
    void waitUntil(Lock& lock, std::chrono::nanoseconds deadline);

private:
    pthread_cond_t condition;
    std::atomic<uint64_t> count{0};
};

}  // namespace platform
