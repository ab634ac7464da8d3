// Conversions that are defined for every value.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

namespace platform {

// Truncates toward zero; what lies outside the range gives its nearest end, NaN gives 0.
inline int32_t toInt32(double value) {
    using Limits = std::numeric_limits<int32_t>;
    if (std::isnan(value)) return 0;
    return static_cast<int32_t>(std::clamp<double>(value, Limits::min(), Limits::max()));
}

}  // namespace platform
