// The white point as the panel's driver reports it.
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

// Reads "x=%d,y=%d" by scanf's rules: white space may stand before a number, anything after the second one. A number
// beyond the int range gives the nearest end. Nothing unless both numbers are there.
std::optional<WhitePointThousandths> parseWhitePoint(const std::string& text);

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
