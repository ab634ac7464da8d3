// SPDX-License-Identifier: Apache-2.0
// Compiled on the host and on the phone.
#include <platform/Mutex.h>

#include <ctime>

namespace platform {

Condition::Condition() {
    pthread_condattr_t attributes;
    pthread_condattr_init(&attributes);
    pthread_condattr_setclock(&attributes, CLOCK_MONOTONIC);
    pthread_cond_init(&condition, &attributes);
    pthread_condattr_destroy(&attributes);
}

void Condition::waitUntil(Lock& lock, std::chrono::nanoseconds deadline) {
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(deadline);
    timespec time{};
    time.tv_sec = static_cast<time_t>(seconds.count());
    time.tv_nsec = static_cast<long>((deadline - seconds).count());
    pthread_cond_timedwait(&condition, &lock.mutex().mutex, &time);
}

}  // namespace platform
