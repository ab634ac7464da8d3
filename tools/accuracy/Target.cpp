// SPDX-License-Identifier: Apache-2.0
#include "tools/accuracy/Target.h"

#include <cmath>

namespace simulator {

std::optional<Target> makeTarget(const Primaries& primaries, const Chromaticity& white) {
    auto toXyz = rgbToXyz(primaries, white);
    if (!toXyz) return std::nullopt;
    for (double& element : *toXyz) element *= 100;
    const auto fromXyz = inverse(*toXyz);
    if (!fromXyz) return std::nullopt;
    return Target{primaries, white, *toXyz, *fromXyz};
}

std::optional<Primaries> primariesOf(std::string_view name) {
    if (name == "srgb") return kSrgbPrimaries;
    if (name == "display-p3") return kDisplayP3Primaries;
    return std::nullopt;
}

Vec3 whiteOf(const Target& target) {
    return multiply(target.toXyz, Vec3{1, 1, 1});
}

Vec3 xyzOf(const Target& target, const Vec3& rgb) {
    Vec3 linear;
    for (size_t i = 0; i < 3; ++i) linear[i] = std::pow(rgb[i], kTargetExponent);
    return multiply(target.toXyz, linear);
}

}  // namespace simulator
