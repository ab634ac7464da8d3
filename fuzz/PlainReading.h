// SPDX-License-Identifier: Apache-2.0
// The rules by which a calibration document is read, written a second time: element by element as they come.
#pragma once

#include <memory>
#include <string>

#include "calibration/ConfigXmlParser.h"

namespace fuzz {

using CalibrationRecord = ::vendor::kov::hardware::display_control::V1_0::implementation::ConfigXmlParser;

// The record that a document makes; null for one whose reading depends on more than its elements and their text: a
// document type (it may have entities), and comments, instructions or further elements inside a value.
std::unique_ptr<CalibrationRecord> readPlainly(const std::string& document);

}  // namespace fuzz
