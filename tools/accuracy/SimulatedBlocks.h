// SPDX-License-Identifier: Apache-2.0
// What a calibration says to the simulated closed libraries; on a phone its blocks mean what that phone's libraries
// make of them.
#pragma once

#include "calibration/ConfigXmlParser.h"
#include "tools/accuracy/PanelModel.h"

namespace simulator {

// Sets UnlimitedCT (white of 4500 K at the warm end and of 9300 K at the cold one), EyeCare (from 6500 to 2900 K, level
// 0 the identity) and WPCParam (the primaries) for that panel. Throws std::runtime_error if the panel cannot show these
// whites.
void setSimulatedBlocks(const PanelModel& panel,
                        ::vendor::kov::hardware::display_control::V1_0::implementation::ConfigXmlParser& record);

}  // namespace simulator
