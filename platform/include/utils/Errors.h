// SPDX-License-Identifier: Apache-2.0
// Status codes of the platform's own calls.
#pragma once

#include <cstdint>
#include <limits>

namespace android {

using status_t = int32_t;

enum : status_t {
    OK = 0,
    UNKNOWN_ERROR = std::numeric_limits<int32_t>::min(),
    DEAD_OBJECT = -32,
};

}  // namespace android
