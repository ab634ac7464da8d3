// SPDX-License-Identifier: Apache-2.0
// The display that a panel is compared with.
#pragma once

#include <optional>
#include <string_view>

#include "simulator/Colorimetry.h"

namespace simulator {

constexpr double kTargetExponent = 2.2;
constexpr Primaries kDisplayP3Primaries = {{0.680, 0.320}, {0.265, 0.690}, {0.150, 0.060}};  // SMPTE EG 432-1

// An ideal display:
//
//     XYZ = M * (R^E, G^E, B^E), E = 2.2 in general, M from primaries and white by SMPTE RP 177, Y = 100 for white
//
// The exponent 2.2 is the one that composers decode pictures with, so that it is right for greys and for colours; the
// transfer function of IEC 61966-2-1 differs from it by up to 0.2 in gamma near black.
struct Target {
    Primaries primaries;
    Chromaticity white;
    Mat3 toXyz;    // from linear RGB
    Mat3 fromXyz;  // its inverse
    double exponent = kTargetExponent;
};

// Nothing if the white is not inside the triangle of the primaries.
std::optional<Target> makeTarget(const Primaries& primaries, const Chromaticity& white = kD65,
                                 double exponent = kTargetExponent);

// The primaries of "srgb" and "display-p3"; nothing for another name.
std::optional<Primaries> primariesOf(std::string_view name);

// The name of the primaries that are one of these; otherwise "other primaries".
std::string_view nameOf(const Primaries& primaries);

Vec3 whiteOf(const Target& target);
Vec3 xyzOf(const Target& target, const Vec3& rgb);

}  // namespace simulator
