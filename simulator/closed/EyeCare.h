// SPDX-License-Identifier: Apache-2.0
// Model of the closed library of the eye-care colour temperature (closed/voeyecare.h).
//
// A level L in [0, 100] runs from the maximum colour temperature (0) to the minimum (100); t = L / 100.
//
// With coefficients c, element e of the 3x3 matrix (by rows) is the cubic
//
//     c[4e] + c[4e + 1] t + c[4e + 2] t^2 + c[4e + 3] t^3
//
// and the temperatures have no part in it. With all 36 coefficients zero the matrix is diagonal and comes from the
// Planckian locus instead: the colour temperature T of the level is interpolated in reciprocal temperature (mired), in
// which equal steps look about equally large (Priest, J. Opt. Soc. Am. 23 (1933), 41),
//
//     1 / T = (1 - t) / maxCCT + t / minCCT
//
// and a channel's gain is the linear sRGB (IEC 61966-2-1) of the locus at T over that at maxCCT, both at the same
// luminance, divided by the largest of the three. Level 0 is the identity. The phone's library may read the
// coefficients differently.
#pragma once

#include <closed/voeyecare.h>

#include <optional>

#include "simulator/Colorimetry.h"

namespace simulator {

constexpr int kEyeCareWeakest = 0;      // level
constexpr int kEyeCareStrongest = 100;  // level
constexpr size_t kEyeCareCoefficients = 36;

// What setEyeCareParamsOled and getEyeCareCoeffOled answer besides 0: then set has kept the parameters that it had, and
// get has written nothing.
constexpr int kEyeCareNotConfigured = -1;    // get: no parameters were set
constexpr int kEyeCareBadLevel = -2;         // get: below kEyeCareWeakest or above kEyeCareStrongest
constexpr int kEyeCareBadTemperatures = -3;  // set: see checkEyeCareParams
constexpr int kEyeCareBadCoefficients = -4;  // set: see checkEyeCareParams

// 0, or what is wrong with the parameters:
// - kEyeCareBadCoefficients: not exactly 36, one not finite, or an element's four so large that it could leave float's
//   range (their magnitudes add up to more than the largest float);
// - kEyeCareBadTemperatures, when all coefficients are zero: one outside kLocusMinKelvin to kLocusMaxKelvin, the
// maximum
//   below the minimum, or a maximum below about 1900 K, whose light sRGB cannot show and nothing can be relative to.
int checkEyeCareParams(const EyeCareParams& params);

// The colour temperature of a level in kelvin, for parameters that checkEyeCareParams accepts.
double eyeCareTemperature(const EyeCareParams& params, int level);

// The matrix of a level, by rows. On the diagonal road every gain is in [0, 1] and the largest is 1; a channel that
// sRGB would need below zero, blue below about 1900 K, is 0. With coefficients it is what they say, at level 0 too.
// Nothing if the level is outside its range or checkEyeCareParams rejects the parameters.
std::optional<Mat3> eyeCareMatrix(const EyeCareParams& params, int level);

}  // namespace simulator
