// SPDX-License-Identifier: Apache-2.0
// The threads on which a service process is called. Only declared: on the host a call runs on its caller's thread.
#pragma once

#include <cstddef>

namespace android::hardware {

// Sets the number of threads; with callerWillJoin the thread that calls joinRpcThreadpool is one of them. Call it once,
// before the process uses a service.
void configureRpcThreadpool(size_t maxThreads, bool callerWillJoin);

// Serves calls on this thread. Does not return.
void joinRpcThreadpool();

}  // namespace android::hardware
