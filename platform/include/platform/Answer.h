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

    // Calls write(value), unless the answer was taken.
    template <typename Write>
    void deliver(Write write) PLATFORM_EXCLUDES(mutex) {
        const Lock lock(mutex);
        if (!taken) write(value);
    }

    T take() PLATFORM_EXCLUDES(mutex) {
        const Lock lock(mutex);
        taken = true;
        return std::move(value);
    }

private:
    Mutex mutex;
    bool taken PLATFORM_GUARDED_BY(mutex) = false;
    T value PLATFORM_GUARDED_BY(mutex);
};

}  // namespace platform
