// SPDX-License-Identifier: Apache-2.0
// The display driver's sysfs nodes that the service uses.
#pragma once

#include <cstdint>

namespace vendor::kov::hardware::display_control::V1_0::implementation {

constexpr const char* kCabcNode = "/sys/bus/platform/devices/30620000.dsi/30620000.dsi.0/lcd_cabc_mode";
constexpr const char* kWhitePointNode = "/sys/bus/platform/devices/30620000.dsi/30620000.dsi.0/lcd_whitepoint_info";

// Levels of the backlight control node.
constexpr int32_t kCabcOff = 0;
constexpr int32_t kCabcOn = 1;

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
