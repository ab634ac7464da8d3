// SPDX-License-Identifier: Apache-2.0
// Conversions that are defined for every value.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

namespace platform {

// Truncates toward zero. A value outside the int32_t range becomes the nearest bound; NaN becomes 0.
inline int32_t toInt32(double value) {
    using Limits = std::numeric_limits<int32_t>;
    if (std::isnan(value)) return 0;
    return static_cast<int32_t>(std::clamp<double>(value, Limits::min(), Limits::max()));
}

}  // namespace platform
