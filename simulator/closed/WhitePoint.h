// SPDX-License-Identifier: Apache-2.0
// Model of the closed display post-processing library (closed/displayppalgorithm.h).
//
// WhitePointCalibrateParam's params are x of the panel's red, green and blue primary in [0] to [2] and their y in [3]
// to [5]; [6] to [8] are not read. With M the matrix from linear RGB to XYZ of these primaries and the measured white
// (SMPTE RP 177), the linear gains that turn the panel's white into D65 (CIE 15) are
//
//     g = M^-1 XYZ(D65)
//
// divided by the largest of them. The phone's library may weigh accuracy against brightness differently.
#pragma once

#include <closed/displayppalgorithm.h>

#include <optional>

#include "simulator/Colorimetry.h"

namespace simulator {

// What WhitePointCalibrate answers besides 0: the panel cannot be (see rgbToXyz) or cannot show D65. The gains are left
// as they were given.
constexpr int kWhitePointImpossible = -1;

// The red, green and blue gain, each in (0, 1], the largest 1; all 1 if the measured white is D65.
// Nothing if rgbToXyz has no matrix for the panel, or if D65 is not inside its triangle.
std::optional<Vec3> whitePointGains(const Primaries& primaries, const Chromaticity& white);

}  // namespace simulator
