// SPDX-License-Identifier: Apache-2.0
// Threads that report by a value when they cannot be started: the library is built without exceptions.
#pragma once

#include <pthread.h>

#include <functional>
#include <memory>

namespace platform {

// A thread that was started. Its owner joins it once, before destroying it.
class Thread {
public:
    // Runs body on a new thread. Null if the system has no thread for it.
    static std::unique_ptr<Thread> start(std::function<void()> body);

    Thread(const Thread&) = delete;
    Thread& operator=(const Thread&) = delete;

    pthread_t id() const { return thread; }
    void join() { pthread_join(thread, nullptr); }

private:
    Thread() = default;

    pthread_t thread{};
};

}  // namespace platform
