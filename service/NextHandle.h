// SPDX-License-Identifier: Apache-2.0
// The order of user handles.
#pragma once

#include <cstdint>

namespace vendor::kov::hardware::display_control::V1_0::implementation {

// The handle after last: last + 1, and 1 after the largest. Never 0.
constexpr uint64_t nextHandle(uint64_t last) {
    return last == UINT64_MAX ? 1 : last + 1;
}

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
