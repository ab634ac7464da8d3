// SPDX-License-Identifier: Apache-2.0
// Calibrations and their differences as JSON.
#pragma once

#include "tools/accuracy/Accuracy.h"
#include "tools/accuracy/Calibrate.h"
#include "tools/accuracy/CalibrationDifferences.h"
#include "tools/json/Json.h"

namespace simulator {

Json calibrationToJson(const std::string& file, const PanelCalibration& calibration, const Accuracy& accuracy);

// "shown" is null without a panel.
Json differencesToJson(const CalibrationDifferences& differences);

}  // namespace simulator
