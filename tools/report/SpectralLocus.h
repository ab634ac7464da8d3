// SPDX-License-Identifier: Apache-2.0
// The colours of monochromatic light.
#pragma once

#include <array>

#include "simulator/Colorimetry.h"

namespace simulator {

constexpr int kLocusFirstNanometre = 380;
constexpr int kLocusStepNanometres = 5;

// Chromaticity of light of 380, 385 ... 700 nm for the CIE 1931 standard observer (2 degrees), as CIE 15 tabulates it,
// to four digits. Beyond both ends the eye sees the end's colour.
extern const std::array<Chromaticity, 65> kSpectralLocus;

}  // namespace simulator
