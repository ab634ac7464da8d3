// SPDX-License-Identifier: Apache-2.0
// The text of the white-point node.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace vendor::kov::hardware::display_control::V1_0::implementation {

// CIE 1931 xy in thousandths: 313 is 0.313.
struct WhitePointThousandths {
    int32_t x;
    int32_t y;
};

// Parses "x=%d,y=%d" by scanf's rules: white space may precede a number, and any text may follow the second one. A
// number outside the int32_t range becomes the nearest bound. Returns nothing unless both numbers are converted.
std::optional<WhitePointThousandths> parseWhitePoint(const std::string& text);

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
