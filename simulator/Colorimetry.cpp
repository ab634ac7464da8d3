// SPDX-License-Identifier: Apache-2.0
#include "simulator/Colorimetry.h"

#include <algorithm>
#include <cmath>

namespace simulator {

namespace {

constexpr double kSmallestDeterminant = 1e-12;  // of the product of the rows' lengths

// ((a v + b) v + c) v + d
struct Cubic {
    double a, b, c, d;

    double operator()(double v) const { return ((a * v + b) * v + c) * v + d; }
};

// The pieces of the locus: up to a temperature in kelvin, a cubic for x in 1000 K / T and for y in x.
struct LocusPiece {
    double upToKelvin;
    Cubic x, y;
};

constexpr Cubic kWarmX = {-0.2661239, -0.2343589, 0.8776956, 0.179910};
constexpr Cubic kColdX = {-3.0258469, 2.1070379, 0.2226347, 0.240390};
constexpr LocusPiece kLocus[] = {
    {2222.0, kWarmX, {-1.1063814, -1.34811020, 2.18555832, -0.20219683}},
    {4000.0, kWarmX, {-0.9549476, -1.37418593, 2.09137015, -0.16748867}},
    {kLocusMaxKelvin, kColdX, {3.0817580, -5.87338670, 3.75112997, -0.37001483}},
};

double rowLength(const Mat3& m, size_t row) {
    return std::hypot(m[3 * row], m[3 * row + 1], m[3 * row + 2]);
}

bool isPossible(const Chromaticity& c) {
    return std::isfinite(c.x) && std::isfinite(c.y) && c.y > 0.0;
}

bool isPositive(double value) {
    return value > 0.0;
}

}  // namespace

double srgbToLinear(double encoded) {
    if (encoded <= 0.04045) return encoded / 12.92;
    return std::pow((encoded + 0.055) / 1.055, 2.4);
}

double linearToSrgb(double linear) {
    if (linear <= 0.0031308) return linear * 12.92;
    return 1.055 * std::pow(linear, 1.0 / 2.4) - 0.055;
}

std::optional<Chromaticity> planckianLocus(double kelvin) {
    if (!(kelvin >= kLocusMinKelvin)) return std::nullopt;
    for (const LocusPiece& piece : kLocus) {
        if (kelvin > piece.upToKelvin) continue;
        const double x = piece.x(1000.0 / kelvin);
        return Chromaticity{x, piece.y(x)};
    }
    return std::nullopt;
}

Vec3 xyzOf(const Chromaticity& chromaticity) {
    const auto [x, y] = chromaticity;
    return {x / y, 1.0, (1.0 - x - y) / y};
}

Chromaticity chromaticityOf(const Vec3& xyz) {
    const double sum = xyz[0] + xyz[1] + xyz[2];
    return {xyz[0] / sum, xyz[1] / sum};
}

Vec3 scaled(const Vec3& v, double factor) {
    return {v[0] * factor, v[1] * factor, v[2] * factor};
}

Vec3 multiply(const Mat3& m, const Vec3& v) {
    Vec3 result{};
    for (size_t i = 0; i < 3; ++i) result[i] = m[3 * i] * v[0] + m[3 * i + 1] * v[1] + m[3 * i + 2] * v[2];
    return result;
}

Mat3 multiply(const Mat3& a, const Mat3& b) {
    Mat3 result{};
    for (size_t column = 0; column < 3; ++column) {
        const Vec3 product = multiply(a, Vec3{b[column], b[3 + column], b[6 + column]});
        for (size_t row = 0; row < 3; ++row) result[3 * row + column] = product[row];
    }
    return result;
}

std::optional<Mat3> inverse(const Mat3& m) {
    // The adjugate: the cofactors, transposed.
    const Mat3 adjugate = {m[4] * m[8] - m[5] * m[7], m[2] * m[7] - m[1] * m[8], m[1] * m[5] - m[2] * m[4],
                           m[5] * m[6] - m[3] * m[8], m[0] * m[8] - m[2] * m[6], m[2] * m[3] - m[0] * m[5],
                           m[3] * m[7] - m[4] * m[6], m[1] * m[6] - m[0] * m[7], m[0] * m[4] - m[1] * m[3]};
    const double determinant = m[0] * adjugate[0] + m[1] * adjugate[3] + m[2] * adjugate[6];
    const double lengths = rowLength(m, 0) * rowLength(m, 1) * rowLength(m, 2);
    // Written so that it refuses NaN as well, and an infinity, which is in the lengths too.
    if (!(std::abs(determinant) > kSmallestDeterminant * lengths)) return std::nullopt;

    Mat3 result{};
    for (size_t i = 0; i < result.size(); ++i) result[i] = adjugate[i] / determinant;
    return result;
}

std::optional<Mat3> rgbToXyz(const Primaries& primaries, const Chromaticity& white) {
    const auto& [red, green, blue] = primaries;
    if (!isPossible(red) || !isPossible(green) || !isPossible(blue) || !isPossible(white)) return std::nullopt;

    const Vec3 r = xyzOf(red);
    const Vec3 g = xyzOf(green);
    const Vec3 b = xyzOf(blue);
    Mat3 result = {r[0], g[0], b[0], r[1], g[1], b[1], r[2], g[2], b[2]};
    const std::optional<Mat3> mixing = inverse(result);
    if (!mixing) return std::nullopt;

    // How much light of each primary the white is made of: all of them only if it lies inside their triangle.
    const Vec3 light = multiply(*mixing, xyzOf(white));
    if (!std::all_of(light.begin(), light.end(), isPositive)) return std::nullopt;
    for (size_t i = 0; i < result.size(); ++i) result[i] *= light[i % 3];
    return result;
}

Vec3 scaledToLargest(const Vec3& v) {
    const double largest = *std::max_element(v.begin(), v.end());
    return {v[0] / largest, v[1] / largest, v[2] / largest};
}

}  // namespace simulator
