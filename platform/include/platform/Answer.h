// Answers of services: those that do not matter, and those that come through a callback.
#pragma once

#include <hidl/Status.h>
#include <platform/Mutex.h>

#include <utility>

namespace platform {

// For a call whose answer is not examined: a failed transport is the same as an answer that was dropped.
template <typename T>
void dropAnswer(const ::android::hardware::Return<T>& answer) {
    static_cast<void>(answer.isOk());
}

// What a service delivers through its callback. Shared with the callback, for a service may call back more than once,
// late, and on a thread of its own: the last delivery before take() counts.
template <typename T>
class Answer {
public:
    // What there is without a delivery.
    explicit Answer(T initial = {}) : value(std::move(initial)) {}

    // Nothing happens once the answer was taken.
    void deliver(T delivered) PLATFORM_EXCLUDES(mutex) {
        const Lock lock(mutex);
        if (!taken) std::swap(value, delivered);  // what was there goes after the lock
    }

    // A second one gives T{}.
    T take() PLATFORM_EXCLUDES(mutex) {
        const Lock lock(mutex);
        taken = true;
        return std::exchange(value, T{});
    }

private:
    Mutex mutex;
    bool taken PLATFORM_GUARDED_BY(mutex) = false;
    T value PLATFORM_GUARDED_BY(mutex);
};

}  // namespace platform
