// SPDX-License-Identifier: Apache-2.0
// The colour state of one display and the matrix composed from it.
#pragma once

#include <array>
#include <cstdint>

#include "color/TMat33.h"

namespace vendor::kov::hardware::display_control::V1_0::implementation {

// Holds the matrices that make up a display's colour transform, and the last requested colour-temperature levels.
//
// The service owns one per display, by value, and reads and writes the matrices directly. It takes no lock: one thread
// at a time. The closed colour libraries keep their configuration for the whole process.
class ColorManager {
public:
    static constexpr size_t kEyeCareRun = 38;          // values of the eye-care run: maximum, minimum, 36 coefficients
    static constexpr int32_t kDefaultWarm = 0xFFFFEA;  // 0xRRGGBB
    static constexpr int32_t kDefaultCold = 0xEDFDFF;  // 0xRRGGBB

    // Configures the closed libraries; changes no colour manager. endPoints is null (use the defaults above) or two
    // colours 0xRRGGBB, warm first. eyeCare is null (leave the library as it is) or 38 values: the maximum and the
    // minimum colour temperature in kelvin, then 36 coefficients. Returns 0.
    static int init(const int32_t* endPoints, const double* eyeCare);

    // Sets the diagonal of unlimitedCtm to the closed library's gains for level. Any int is a level; the library
    // defines its meaning. A library error is logged; the gains that it wrote are used, 1 for those that it did not.
    // Returns 0.
    int setUnlimitedCT(int32_t level);

    // The same for the eye-care matrix: all nine elements of eyeCareCtm, initially the identity. Returns 0.
    int setEyeCareCT(int32_t level);

    // Product of the matrices in effect: eye care x (unlimited x (white point x colour correction)). A colour is
    // multiplied by the colour-correction matrix first and by the eye-care matrix last.
    TMat33<float> composedCtm() const;

    // composedCtm normalised by scaleCCM. This matrix is sent to the composer.
    TMat33<float> finalCtm() const;

    // Largest output channel of m over the seven non-black corners of the RGB cube: 1 for the identity, 0 if no corner
    // has a positive output. Infinity and NaN follow the corners' arithmetic: infinity times 0 is NaN, and a NaN is
    // replaced by the next output.
    static float maxRgb(const TMat33<float>& m);

    // Divides m by its maxRgb if that exceeds 1e-6, so that its largest output becomes 1. Returns 0.
    static int scaleCCM(TMat33<float>& m);

    TMat33<float> wpcCtm;        // white point, in effect
    TMat33<float> ccmCtm;        // colour correction, in effect
    TMat33<float> unlimitedCtm;  // unlimited colour temperature: gains on the diagonal, 0 elsewhere
    TMat33<float> eyeCareCtm;    // eye-care colour temperature
    int32_t unlimitedCT = 0;     // last requested level
    int32_t eyeCareCT = 0;       // last requested level
    TMat33<float> calibWpcCtm;   // white point of the panel's calibration, for standard mode
    TMat33<float> calibCcmCtm;   // colour correction of the panel's calibration, for standard mode
};

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
