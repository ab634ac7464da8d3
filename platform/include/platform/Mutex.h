// SPDX-License-Identifier: Apache-2.0
// Locks that Clang's thread-safety analysis checks: access to a guarded member without its mutex fails the build.
#pragma once

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <mutex>

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
    friend class Lock;
    std::mutex mutex;
};

// Holds a mutex until the end of the scope.
class PLATFORM_SCOPED_CAPABILITY Lock {
public:
    explicit Lock(Mutex& held) PLATFORM_ACQUIRE(held) : lock(held.mutex), heldMutex(held) {}
    ~Lock() PLATFORM_RELEASE() = default;
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;

    Mutex& mutex() const { return heldMutex; }

private:
    friend class Condition;
    std::unique_lock<std::mutex> lock;
    Mutex& heldMutex;
};

// A condition variable that counts its notifications, so that the virtual clock can tell them from spurious wake-ups.
// It belongs to one mutex, which every caller holds. To wait, call Clock::waitUntil.
class Condition {
public:
    void notifyOne() {
        ++count;
        condition.notify_one();
    }
    void notifyAll() {
        ++count;
        condition.notify_all();
    }

    // Number of notifications so far. May be called without the mutex.
    uint64_t notifications() const { return count; }

    // Return on a notification or spuriously; waitUntil also returns at the deadline.
    void wait(Lock& lock) { condition.wait(lock.lock); }
    template <typename TimePoint>
    void waitUntil(Lock& lock, TimePoint deadline) {
        condition.wait_until(lock.lock, deadline);
    }

private:
    std::condition_variable condition;
    std::atomic<uint64_t> count{0};
};

}  // namespace platform
