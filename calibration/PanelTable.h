// SPDX-License-Identifier: Apache-2.0
// Calibration file of each panel.
#pragma once

#include <platform/DeviceFiles.h>

#include <map>
#include <string>

namespace vendor::kov::hardware::display_control::V1_0::implementation {

// Panel name, exactly as the driver's node delivers it with the final line feed, to the absolute path of the panel's
// calibration file. The product chooses its panels: the service's chief source defines the table.
extern const std::map<std::string, std::string> panelCalibFiles;

// Calibration file of a panel that is not in the table.
extern const std::string kDefaultCalibFile;

constexpr const char* kPanelNameNode = "/sys/bus/platform/devices/30620000.dsi/30620000.dsi.0/lcd_panel_name";

// Calibration file of the panel with that name: an exact match, letter case and line feed included, or the default.
const std::string& calibFileOf(const std::string& panelName);

struct PanelIdentity {
    platform::NodeText name;  // as read from the node
    std::string calibFile;    // the phone's path
};

// Reads the panel name node.
PanelIdentity identifyPanel();

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
