// SPDX-License-Identifier: Apache-2.0
#include "tools/accuracy/Target.h"

#include <cmath>
#include <utility>

namespace simulator {

namespace {

constexpr std::pair<std::string_view, Primaries> kNamedPrimaries[] = {{"srgb", kSrgbPrimaries},
                                                                      {"display-p3", kDisplayP3Primaries}};

bool isSame(const Chromaticity& a, const Chromaticity& b) {
    return a.x == b.x && a.y == b.y;
}

}  // namespace

std::optional<Target> makeTarget(const Primaries& primaries, const Chromaticity& white, double exponent) {
    auto toXyz = rgbToXyz(primaries, white);
    if (!toXyz) return std::nullopt;
    for (double& element : *toXyz) element *= 100;
    const auto fromXyz = inverse(*toXyz);
    if (!fromXyz) return std::nullopt;
    return Target{primaries, white, *toXyz, *fromXyz, exponent};
}

std::optional<Primaries> primariesOf(std::string_view name) {
    for (const auto& [known, primaries] : kNamedPrimaries) {
        if (name == known) return primaries;
    }
    return std::nullopt;
}

std::string_view nameOf(const Primaries& primaries) {
    const auto& [red, green, blue] = primaries;
    for (const auto& [name, known] : kNamedPrimaries) {
        if (isSame(red, known.red) && isSame(green, known.green) && isSame(blue, known.blue)) return name;
    }
    return "other primaries";
}

Vec3 whiteOf(const Target& target) {
    return multiply(target.toXyz, Vec3{1, 1, 1});
}

Vec3 xyzOf(const Target& target, const Vec3& rgb) {
    Vec3 linear;
    for (size_t i = 0; i < 3; ++i) linear[i] = std::pow(rgb[i], target.exponent);
    return multiply(target.toXyz, linear);
}

}  // namespace simulator
