// SPDX-License-Identifier: Apache-2.0
// What the service process does.
#pragma once

#include <functional>

namespace vendor::kov::hardware::display_control::V1_0::implementation {

// Starts the library, publishes it as the "default" display-control service, and calls joinPool, which serves clients
// until it returns. Returns the exit status of the process, always 1; a failed start is logged and joinPool is not
// called. From then on, composerDied is called on a thread of the pool when the composer's process ends: the library's
// connection does not recover.
int serve(const std::function<void()>& joinPool, const std::function<void()>& composerDied);

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
