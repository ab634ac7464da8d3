// SPDX-License-Identifier: Apache-2.0
// L*a*b* and CIEDE2000 are lcms2's. So is the correlated colour temperature: it interpolates between isotemperature
// lines, the normals of the Planckian locus in CIE 1960 u, v (Robertson, "Computation of correlated color temperature
// and distribution temperature", J. Opt. Soc. Am. 58 (1968), 1528-1535), to about 2 K at 6500 K.
//
// Duv is the approximation of Ohno, "Practical use and calculation of CCT and Duv", Leukos 10 (2014), 47-55, good to
// 0.0001 from 2500 to 20000 K:
//
//     L = |(u, v) - (0.292, 0.240)|, a = the angle of (u, v) seen from there, Duv = L - sum of k_i a^i, i = 0 to 6
#include "tools/accuracy/Colorimetry.h"

#include <lcms2.h>

#include <algorithm>
#include <cmath>
#include <iterator>

namespace simulator {

namespace {

constexpr double kLargestDuv = 0.05;
constexpr double kDuv[] = {-0.471106, 1.925865, -2.4243787, 1.5317403, -0.5179722, 0.0893944, -0.00616793};

cmsCIEXYZ toLcms(const Vec3& xyz) {
    return {xyz[0], xyz[1], xyz[2]};
}

}  // namespace

Vec3 toLab(const Vec3& xyz, const Vec3& white) {
    const cmsCIEXYZ color = toLcms(xyz);
    const cmsCIEXYZ reference = toLcms(white);
    cmsCIELab lab;
    cmsXYZ2Lab(&reference, &lab, &color);
    return {lab.L, lab.a, lab.b};
}

double deltaE2000(const Vec3& a, const Vec3& b, const Vec3& white) {
    const auto [firstL, firstA, firstB] = toLab(a, white);
    const auto [secondL, secondA, secondB] = toLab(b, white);
    const cmsCIELab first = {firstL, firstA, firstB};
    const cmsCIELab second = {secondL, secondA, secondB};
    return cmsCIE2000DeltaE(&first, &second, 1, 1, 1);
}

ColorErrors summaryOf(const std::vector<double>& errors) {
    ColorErrors summary{};
    for (const double error : errors) {
        summary.mean += error / static_cast<double>(errors.size());
        summary.largest = std::max(summary.largest, error);
    }
    return summary;
}

double deltaC(const Vec3& a, const Vec3& b, const Vec3& white) {
    const Vec3 first = toLab(a, white);
    const Vec3 second = toLab(b, white);
    return std::hypot(first[1] - second[1], first[2] - second[2]);
}

Chromaticity chromaticityOf(const Vec3& xyz) {
    const double sum = xyz[0] + xyz[1] + xyz[2];
    return {xyz[0] / sum, xyz[1] / sum};
}

UvPrime toUvPrime(const Chromaticity& chromaticity) {
    const double divisor = -2 * chromaticity.x + 12 * chromaticity.y + 3;
    return {4 * chromaticity.x / divisor, 9 * chromaticity.y / divisor};
}

double duvOf(const Chromaticity& chromaticity) {
    const UvPrime uv = toUvPrime(chromaticity);
    const double u = uv.u - 0.292;
    const double v = uv.v * 2 / 3 - 0.240;
    const double angle = std::acos(u / std::hypot(u, v));
    double locus = 0;
    for (size_t i = std::size(kDuv); i > 0; --i) locus = locus * angle + kDuv[i - 1];
    return std::hypot(u, v) - locus;
}

std::optional<double> correlatedColorTemperature(const Chromaticity& chromaticity) {
    if (!(std::abs(duvOf(chromaticity)) <= kLargestDuv)) return std::nullopt;
    const cmsCIExyY white = {chromaticity.x, chromaticity.y, 1};
    double kelvin = 0;
    if (cmsTempFromWhitePoint(&kelvin, &white) == 0) return std::nullopt;
    return kelvin;
}

}  // namespace simulator
