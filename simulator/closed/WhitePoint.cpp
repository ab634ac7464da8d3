// SPDX-License-Identifier: Apache-2.0
#include "simulator/closed/WhitePoint.h"

#include <algorithm>

namespace simulator {

std::optional<Vec3> whitePointGains(const Primaries& primaries, const Chromaticity& white) {
    const auto toXyz = rgbToXyz(primaries, white);
    const auto toRgb = toXyz ? inverse(*toXyz) : std::nullopt;
    if (!toRgb) return std::nullopt;
    const Vec3 gains = multiply(*toRgb, xyzOf(kD65));
    if (!std::all_of(gains.begin(), gains.end(), [](double gain) { return gain > 0.0; })) return std::nullopt;
    return scaledToLargest(gains);
}

}  // namespace simulator
