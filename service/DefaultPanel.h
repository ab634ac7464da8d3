// SPDX-License-Identifier: Apache-2.0
// White point and primaries assumed for a panel that reports none.
#pragma once

#include <closed/displayppalgorithm.h>

namespace vendor::kov::hardware::display_control::V1_0::implementation {

// CIE 1931 xy: the white point; then x of the red, green and blue primaries followed by their y.
constexpr ::android::WhitePointCalibrateParam kDefaultWhitePoint = {
    0.28F, 0.30F, {0.66F, 0.295F, 0.15F, 0.334F, 0.656F, 0.055F, 0.0F, 0.0F, 0.0F}, 1.0F, 1.0F, 1.0F};

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
