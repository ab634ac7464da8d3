// SPDX-License-Identifier: Apache-2.0
// Colour differences and the chromaticity of near-white light. Colours are XYZ of the CIE 1931 observer, in any unit
// that the colours and the white of one call share.
#pragma once

#include <optional>
#include <vector>

#include "simulator/Colorimetry.h"

namespace simulator {

// L*, a*, b* (CIE 15) relative to a white.
Vec3 toLab(const Vec3& xyz, const Vec3& white);

// CIEDE2000 with kL = kC = kH = 1 (ISO/CIE 11664-6).
double deltaE2000(const Vec3& a, const Vec3& b, const Vec3& white);

struct ColorErrors {
    double mean, largest;  // delta E 2000
};
// Both 0 if there is none.
ColorErrors summaryOf(const std::vector<double>& errors);

// Distance in the a*, b* plane.
double deltaC(const Vec3& a, const Vec3& b, const Vec3& white);

struct UvPrime {
    double u, v;  // CIE 1976 u', v'
};
UvPrime toUvPrime(const Chromaticity& chromaticity);

// Distance from the Planckian locus in CIE 1960 u, v; positive above it, where light is greenish.
double duvOf(const Chromaticity& chromaticity);

// Temperature of the nearest point of the Planckian locus in CIE 1960 u, v, in kelvin. Nothing where Duv is beyond
// +-0.05, where the term has no meaning (CIE 15), and below 1667 K.
std::optional<double> correlatedColorTemperature(const Chromaticity& chromaticity);

}  // namespace simulator
