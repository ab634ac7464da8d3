// SPDX-License-Identifier: Apache-2.0
// The panels that the sample phone knows.
#pragma once

#include "tools/sample_data/CalibrationFile.h"

namespace simulator {

extern const Calibration kPanel0a;       // a cool, soft panel with weak blacks
extern const Calibration kPanel0b;       // a warm, contrasty panel whose shadows drown, with a narrow gamut
extern const Calibration kUnknownPanel;  // safe on any panel: nothing is corrected

}  // namespace simulator
