// SPDX-License-Identifier: Apache-2.0
#include "calibration/PanelTable.h"

#include <utility>

namespace vendor::kov::hardware::display_control::V1_0::implementation {

PanelIdentity identifyPanel() {
    constexpr size_t kLimit = 128;  // bytes
    platform::NodeText name = platform::readNode(kPanelNameNode, kLimit);
    const auto row = panelCalibFiles.find(name.text);  // a node that was not read has no name, and so no row
    std::string calibFile = row == panelCalibFiles.end() ? kDefaultCalibFile : row->second;
    return {std::move(name), std::move(calibFile)};
}

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
