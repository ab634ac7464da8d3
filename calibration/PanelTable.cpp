// SPDX-License-Identifier: Apache-2.0
#include "calibration/PanelTable.h"

#include <utility>

namespace vendor::kov::hardware::display_control::V1_0::implementation {

const std::string kDefaultCalibFile = "/vendor/etc/disp_calib_data_default.xml";

const std::string& calibFileOf(const std::string& panelName) {
    const auto row = panelCalibFiles.find(panelName);
    return row == panelCalibFiles.end() ? kDefaultCalibFile : row->second;
}

PanelIdentity identifyPanel() {
    constexpr size_t kLimit = 128;  // bytes
    platform::NodeText name = platform::readNode(kPanelNameNode, kLimit);
    std::string calibFile = name.status == platform::NodeStatus::OK ? calibFileOf(name.text) : kDefaultCalibFile;
    return {std::move(name), std::move(calibFile)};
}

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
