// What is taken for a panel about which nothing is known.
#pragma once

#include <closed/displayppalgorithm.h>

namespace vendor::kov::hardware::display_control::V1_0::implementation {

// White, and the x of the red, green and blue primaries followed by their y: for a panel whose calibration and driver
// tell nothing. CIE 1931 xy.
constexpr android::WhitePointCalibrateParam kDefaultWhitePoint = {
    0.28F, 0.30F, {0.66F, 0.295F, 0.15F, 0.334F, 0.656F, 0.055F, 0.0F, 0.0F, 0.0F}, 1.0F, 1.0F, 1.0F};

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
