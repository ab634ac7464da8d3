// SPDX-License-Identifier: Apache-2.0
// The display driver's sysfs nodes that the service uses.
#pragma once

namespace vendor::kov::hardware::display_control::V1_0::implementation {

constexpr const char* kCabcNode = "/sys/bus/platform/devices/30620000.dsi/30620000.dsi.0/lcd_cabc_mode";
constexpr const char* kWhitePointNode = "/sys/bus/platform/devices/30620000.dsi/30620000.dsi.0/lcd_whitepoint_info";

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
