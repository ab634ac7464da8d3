// SPDX-License-Identifier: Apache-2.0
#include <platform/ScheduledClock.h>

namespace platform {

void Mutex::lock() {
    ScheduledClock* const scheduler = ScheduledClock::ofCaller();
    if (scheduler == nullptr) {
        pthread_mutex_lock(&mutex);
    } else {
        scheduler->lock(mutex);
    }
}

void Mutex::unlock() {
    ScheduledClock* const scheduler = ScheduledClock::ofCaller();
    if (scheduler == nullptr) {
        pthread_mutex_unlock(&mutex);
    } else {
        scheduler->unlock(mutex);
    }
}

}  // namespace platform
