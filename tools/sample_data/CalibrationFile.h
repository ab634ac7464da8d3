// SPDX-License-Identifier: Apache-2.0
// A panel's calibration file, from the few figures that a display engineer chooses.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace simulator {

// A gamma curve near the usual x^(1/2.2), with the panel's own shape. At 0 it is 0, toward 1 it approaches 1; it rises
// throughout while |bend| < 0.15 and -1 < toe < 1.
struct GammaShape {
    double bend;  // above 0 lifts the dark half and lowers the light one, below 0 the other way round: more contrast
    double toe;   // above 0 opens the deepest shadows, below 0 closes them, as a fraction of their value
};

// Output for the input level x, both 0 to 1.
double gammaValue(const GammaShape& shape, double x);

using Cubic = std::array<double, 4>;  // c[0] + c[1] t + c[2] t^2 + c[3] t^3

struct Calibration {
    std::string about;                      // lines for the comment at the file's head, without a double hyphen
    std::array<double, 9> whitePoint;       // 3x3 by rows, on linear RGB
    std::array<double, 9> colorCorrection;  // 3x3 by rows, on linear RGB
    GammaShape gamma;
    std::optional<GammaShape> tunedGamma;  // none: the file has no tuned table
    uint32_t warm;                         // ends of the unlimited colour temperature, 0xRRGGBB
    uint32_t cold;
    int32_t eyeCareMaxCct;  // kelvin
    int32_t eyeCareMinCct;  // kelvin
    // The elements of the eye-care matrix, by rows, over t = 0 (identity) to 1 (white of eyeCareMinCct). All zero: no
    // fit was made for this panel, the Planckian locus serves instead.
    std::array<Cubic, 9> eyeCare;
    std::array<double, 9> primaries;  // CIE 1931: x of red, green, blue; y of red, green, blue; three zeros
};

// The whole file as text: XML with every block of the calibration.
std::string calibrationXml(const Calibration& calibration);

}  // namespace simulator
