// SPDX-License-Identifier: Apache-2.0
#include "simulator/closed/EyeCare.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace simulator {

namespace {

constexpr double kLargestElement = std::numeric_limits<float>::max();
constexpr size_t kTerms = 4;  // coefficients of an element's cubic

bool isLevel(int level) {
    return level >= kEyeCareWeakest && level <= kEyeCareStrongest;
}

bool hasCoefficients(const EyeCareParams& params) {
    return std::any_of(params.coeffs.begin(), params.coeffs.end(), [](double c) { return c != 0.0; });
}

// Whether the cubic of these four stays within float's range for t in [0, 1]; false for what is not finite.
bool staysInRange(const double* c) {
    return std::abs(c[0]) + std::abs(c[1]) + std::abs(c[2]) + std::abs(c[3]) <= kLargestElement;
}

bool areUsable(const std::vector<double>& coefficients) {
    if (coefficients.size() != kEyeCareCoefficients) return false;
    for (size_t first = 0; first < kEyeCareCoefficients; first += kTerms) {
        if (!staysInRange(&coefficients[first])) return false;
    }
    return true;
}

// Linear sRGB at luminance 1; a channel is negative where the gamut does not reach the locus.
std::optional<Vec3> srgbOfLocus(double kelvin) {
    static const std::optional<Mat3> kXyzToSrgb = inverse(*rgbToXyz(kSrgbPrimaries, kD65));
    const auto point = planckianLocus(kelvin);
    if (!point) return std::nullopt;
    return multiply(*kXyzToSrgb, xyzOf(*point));
}

// Whether gains can be relative to this temperature's light.
bool isReference(double kelvin) {
    const auto light = srgbOfLocus(kelvin);
    return light && std::all_of(light->begin(), light->end(), [](double channel) { return channel > 0.0; });
}

Mat3 matrixOfCoefficients(const std::vector<double>& c, double t) {
    Mat3 result{};
    for (size_t e = 0; e < result.size(); ++e) {
        const size_t i = kTerms * e;
        result[e] = c[i] + t * (c[i + 1] + t * (c[i + 2] + t * c[i + 3]));
    }
    return result;
}

std::optional<Mat3> matrixOfLocus(double kelvin, double referenceKelvin) {
    const auto light = srgbOfLocus(kelvin);
    const auto reference = srgbOfLocus(referenceKelvin);
    if (!light || !reference) return std::nullopt;
    Vec3 gains{};
    for (size_t i = 0; i < gains.size(); ++i) gains[i] = std::max(0.0, (*light)[i] / (*reference)[i]);
    gains = scaledToLargest(gains);
    return Mat3{gains[0], 0, 0, 0, gains[1], 0, 0, 0, gains[2]};
}

}  // namespace

int checkEyeCareParams(const EyeCareParams& params) {
    if (!areUsable(params.coeffs)) return kEyeCareBadCoefficients;
    if (hasCoefficients(params)) return 0;
    if (params.minCCT < kLocusMinKelvin || params.maxCCT > kLocusMaxKelvin) return kEyeCareBadTemperatures;
    if (params.maxCCT < params.minCCT) return kEyeCareBadTemperatures;
    if (!isReference(params.maxCCT)) return kEyeCareBadTemperatures;
    return 0;
}

double eyeCareTemperature(const EyeCareParams& params, int level) {
    const double t = level / 100.0;
    const double maximum = params.maxCCT;
    const double minimum = params.minCCT;
    return maximum * minimum / (minimum + t * (maximum - minimum));  // exact at both ends
}

std::optional<Mat3> eyeCareMatrix(const EyeCareParams& params, int level) {
    if (!isLevel(level) || checkEyeCareParams(params) != 0) return std::nullopt;
    if (hasCoefficients(params)) return matrixOfCoefficients(params.coeffs, level / 100.0);
    return matrixOfLocus(eyeCareTemperature(params, level), params.maxCCT);
}

}  // namespace simulator
