#include "calibration/PanelTable.h"

namespace vendor::kov::hardware::display_control::V1_0::implementation {

const std::string kDefaultCalibFile = "/vendor/etc/disp_calib_data_default.xml";

const std::string& calibFileOf(const std::string& panelName) {
    const auto row = panelCalibFiles.find(panelName);
    return row == panelCalibFiles.end() ? kDefaultCalibFile : row->second;
}

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
