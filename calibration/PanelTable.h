// SPDX-License-Identifier: Apache-2.0
// Identifies the panel and its calibration file.
#pragma once

#include <platform/DeviceFiles.h>

#include <map>
#include <string>

namespace vendor::kov::hardware::display_control::V1_0::implementation {

// Calibration file of each panel of this product: absolute path by panel name. The name is the exact text of the
// driver's node, with the final line feed. Defined in service/DisplayControlImpl.cpp.
extern const std::map<std::string, std::string> panelCalibFiles;

// Calibration file of a panel that is not in the table.
constexpr const char* kDefaultCalibFile = "/vendor/etc/disp_calib_data_default.xml";

constexpr const char* kPanelNameNode = "/sys/bus/platform/devices/30620000.dsi/30620000.dsi.0/lcd_panel_name";

struct PanelIdentity {
    platform::NodeText name;  // as read from the node
    std::string calibFile;    // the phone's path
};

// Reads the panel name node.
PanelIdentity identifyPanel();

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
