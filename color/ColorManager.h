// The colour state of one display and what is computed from it.
#pragma once

#include <array>
#include <cstdint>

#include "color/TMat33.h"

namespace vendor::kov::hardware::display_control::V1_0::implementation {

// Holds the matrices of which a display's colour transform is made, and the levels last asked for.
//
// Owned by the service, one per display, held by value; the service's operations read and write the matrices directly.
// It takes no lock: one thread at a time. The closed colour libraries behind it keep their configuration for the whole
// process.
class ColorManager {
public:
    static constexpr size_t kEndPoints = 2;            // values of the end-point pair: warm, cold
    static constexpr size_t kEyeCareRun = 38;          // values of the eye-care run: maximum, minimum, the coefficients
    static constexpr int32_t kDefaultWarm = 0xFFFFEA;  // 0xRRGGBB
    static constexpr int32_t kDefaultCold = 0xEDFDFF;  // 0xRRGGBB

    // Configures the closed libraries; touches no colour manager. endPoints is null (the defaults above are used) or
    // two colours 0xRRGGBB, warm first. eyeCare is null (the library is left as it is) or 38 values: the maximum and
    // the minimum colour temperature in kelvin, then 36 coefficients. Always 0.
    static int init(const int32_t* endPoints, const double* eyeCare);

    // Takes the unlimited colour temperature's gains of a level (any int; its meaning is the closed library's) into
    // unlimitedCtm. A library error is logged; whatever the library left in the gains, 1 at first, is used. Always 0.
    int setUnlimitedCT(int32_t level);

    // The same with the eye-care matrix of a level, the identity at first, into eyeCareCtm. Always 0.
    int setEyeCareCT(int32_t level);

    // The matrices in effect, chained: eye care x (unlimited x (white point x colour correction)), so that a colour is
    // corrected first and meets the eye-care matrix last.
    TMat33<float> composedCtm() const;

    // composedCtm, normalised as by scaleCCM: what the composer is sent.
    TMat33<float> finalCtm() const;

    // Largest output channel of m over the seven non-black corners of the RGB cube; 1 for the identity, 0 when no
    // corner gives a positive output. With a NaN or an infinity in m the answer depends on where it stands: a corner
    // multiplies every element, so an infinity off its axis is NaN there, and a NaN holds until the next comparison.
    static float maxRgb(const TMat33<float>& m);

    // Divides m by its maxRgb when that exceeds 1e-6, so that its largest output becomes 1. Always 0.
    static int scaleCCM(TMat33<float>& m);

    TMat33<float> wpcCtm;        // white point, in effect
    TMat33<float> ccmCtm;        // colour correction, in effect
    TMat33<float> unlimitedCtm;  // unlimited colour temperature: gains on the diagonal, 0 elsewhere
    TMat33<float> eyeCareCtm;    // eye-care colour temperature
    int32_t unlimitedCT = 0;     // level last asked for, accepted by the library or not
    int32_t eyeCareCT = 0;       // level last asked for, accepted by the library or not
    TMat33<float> calibWpcCtm;   // white point of the panel's calibration, kept for the standard mode
    TMat33<float> calibCcmCtm;   // colour correction of the panel's calibration, kept for the standard mode
};

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
