// SPDX-License-Identifier: Apache-2.0
// Colour arithmetic in CIE 1931 (2 degree observer) terms, in double precision. Pure functions, any thread.
#pragma once

#include <array>
#include <optional>

namespace simulator {

using Vec3 = std::array<double, 3>;  // a colour: X, Y, Z or linear red, green, blue
using Mat3 = std::array<double, 9>;  // by rows: row i, column j at 3i + j

struct Chromaticity {
    double x, y;  // CIE 1931 xy
};

struct Primaries {
    Chromaticity red, green, blue;
};

constexpr Vec3 kFullWhite = {1, 1, 1};  // red, green, blue
constexpr Vec3 kFullBlack = {0, 0, 0};

constexpr Chromaticity kD65 = {0.3127, 0.3290};                                               // CIE 15
constexpr Primaries kSrgbPrimaries = {{0.6400, 0.3300}, {0.3000, 0.6000}, {0.1500, 0.0600}};  // IEC 61966-2-1

// Range of temperatures for which the Planckian locus is known here, kelvin, ends included.
constexpr double kLocusMinKelvin = 1667.0;
constexpr double kLocusMaxKelvin = 25000.0;

// The transfer function of sRGB (IEC 61966-2-1) and its inverse, each from [0, 1] onto [0, 1].
double srgbToLinear(double encoded);
double linearToSrgb(double linear);

// Chromaticity of a black body of this temperature, by the cubic approximation of Kim et al., "Design of advanced
// color temperature control system for HDTV applications", J. Korean Phys. Soc. 41 (2002), 865-871, good to
// about 0.001 in x and y. Nothing outside kLocusMinKelvin to kLocusMaxKelvin, and for NaN.
std::optional<Chromaticity> planckianLocus(double kelvin);

// X, Y, Z of a chromaticity at luminance Y = 1. y must not be 0.
Vec3 xyzOf(const Chromaticity& chromaticity);

// The sum of X, Y and Z must not be 0.
Chromaticity chromaticityOf(const Vec3& xyz);

Vec3 scaled(const Vec3& v, double factor);
Vec3 multiply(const Mat3& m, const Vec3& v);
Mat3 multiply(const Mat3& a, const Mat3& b);

// Nothing if the matrix is singular within rounding (its determinant is below 1e-12 of the product of its rows'
// lengths) or not finite.
std::optional<Mat3> inverse(const Mat3& m);

// The matrix from linear RGB to XYZ of a display with these primaries, on which RGB (1, 1, 1) gives the white at
// Y = 1 (SMPTE RP 177). Nothing for what no display can be: a coordinate that is not finite, a y that is not positive,
// primaries on one line, a white that is not inside their triangle.
std::optional<Mat3> rgbToXyz(const Primaries& primaries, const Chromaticity& white);

// The colour or gains divided by the largest of the three, which must be positive and becomes exactly 1.
Vec3 scaledToLargest(const Vec3& v);

}  // namespace simulator
