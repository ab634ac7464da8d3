// SPDX-License-Identifier: Apache-2.0
// Mutexes on the phone: always the system's.
#include <platform/Mutex.h>

namespace platform {

void Mutex::lock() {
    pthread_mutex_lock(&mutex);
}

void Mutex::unlock() {
    pthread_mutex_unlock(&mutex);
}

}  // namespace platform
