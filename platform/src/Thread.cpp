// SPDX-License-Identifier: Apache-2.0
// Compiled on the host and on the phone.
#include <platform/Thread.h>

#include <utility>

namespace platform {

namespace {

using Body = std::function<void()>;

void* run(void* body) {
    const std::unique_ptr<Body> owned(static_cast<Body*>(body));
    (*owned)();
    return nullptr;
}

}  // namespace

std::unique_ptr<Thread> Thread::start(Body body) {
    std::unique_ptr<Thread> started(new Thread);
    auto owned = std::make_unique<Body>(std::move(body));
    if (pthread_create(&started->thread, nullptr, run, owned.get()) != 0) return nullptr;
    static_cast<void>(owned.release());  // run() deletes it
    return started;
}

}  // namespace platform
