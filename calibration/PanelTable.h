// Which calibration file belongs to which panel.
#pragma once

#include <platform/DeviceFiles.h>

#include <map>
#include <string>

namespace vendor::kov::hardware::display_control::V1_0::implementation {

// Panel name, exactly as the driver's node delivers it with the line feed at its end, to the absolute path of the
// panel's calibration file. What this phone is fitted with is the product's decision: the service's chief source
// defines the table.
extern const std::map<std::string, std::string> panelCalibFiles;

// The file for every panel that the table does not have.
extern const std::string kDefaultCalibFile;

// The calibration file of the panel of that name: an exact match, letter case and line feed included, or the default.
const std::string& calibFileOf(const std::string& panelName);

// What the panel's driver says and the file that follows from it.
struct PanelIdentity {
    platform::NodeText name;  // as read from the node, up to its first zero byte
    std::string calibFile;    // the phone's path
};

// Reads the panel name node anew.
PanelIdentity identifyPanel();

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
