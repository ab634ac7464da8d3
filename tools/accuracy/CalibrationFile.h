// SPDX-License-Identifier: Apache-2.0
// Calibration files: what the library reads from them, and their text.
#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "calibration/ConfigXmlParser.h"
#include "tools/accuracy/Calibrate.h"

namespace simulator {

using ::vendor::kov::hardware::display_control::V1_0::implementation::ConfigXmlParser;

// What the library reads from a file. Throws std::runtime_error if the file cannot be opened or the library refuses it.
std::unique_ptr<ConfigXmlParser> readCalibrationFile(const std::filesystem::path& file);

// The nearest multiple of unit, which is one over an integer.
double rounded(double value, double unit);

// Sets CTM_WPC, CTM_CCM and Gamma_Calib, rounded to 6 and 7 decimals.
void setCalibration(const PanelCalibration& calibration, ConfigXmlParser& record);

// Copies UnlimitedCT, EyeCare and WPCParam where from has them.
void copyLibraryBlocks(const ConfigXmlParser& from, ConfigXmlParser& record);

// A file of the complete blocks of record, each value with the fewest digits that name it exactly. about: lines for the
// comment at its head. isForSimulated: the comment explains the blocks of the simulated libraries.
std::string calibrationXml(const ConfigXmlParser& record, const std::string& about, bool isForSimulated = false);

}  // namespace simulator
