#include "calibration/PanelTable.h"

#include <utility>

namespace vendor::kov::hardware::display_control::V1_0::implementation {

namespace {

constexpr const char* kPanelNameNode = "/sys/bus/platform/devices/30620000.dsi/30620000.dsi.0/lcd_panel_name";
constexpr size_t kPanelNameLimit = 128;  // bytes

}  // namespace

const std::string kDefaultCalibFile = "/vendor/etc/disp_calib_data_default.xml";

const std::string& calibFileOf(const std::string& panelName) {
    const auto row = panelCalibFiles.find(panelName);
    return row == panelCalibFiles.end() ? kDefaultCalibFile : row->second;
}

PanelIdentity identifyPanel() {
    platform::NodeText name = platform::readNode(kPanelNameNode, kPanelNameLimit);
    std::string calibFile = name.status == platform::NodeStatus::OK ? calibFileOf(name.text) : kDefaultCalibFile;
    return {std::move(name), std::move(calibFile)};
}

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
