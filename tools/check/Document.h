// SPDX-License-Identifier: Apache-2.0
// The text of a calibration file with its lines, beside the record that the library reads from it.
#pragma once

#include <array>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "calibration/CalibrationDocument.h"
#include "tools/check/Check.h"
#include "tools/text/XmlMessages.h"

namespace simulator {

using vendor::kov::hardware::display_control::V1_0::implementation::kCalibrationBlocks;
using vendor::kov::hardware::display_control::V1_0::implementation::kLongestCalibrationFile;
using vendor::kov::hardware::display_control::V1_0::implementation::Refusal;

// The flag of the library's record that names a block.
using BlockFlag = bool ConfigXmlParser::*;

// The block whose completeness the flag shows.
const CalibrationBlock& blockOf(BlockFlag flag);

// Names that two of the block's values must have; empty where names do not matter.
std::array<std::string_view, 2> valueNamesOf(const CalibrationBlock& block);

// The block's values in record; null if they are not floats by position.
const float* floatsOf(const CalibrationBlock& block, const ConfigXmlParser& record);

// A value as it is written. Lines, here and below, are exact up to 65535, and near the place beyond it.
struct ValueText {
    long line;
    std::string name;
    std::optional<std::string> text;  // nothing when it is made of entities or of further elements
};

// An element of the document that has the name of a block.
struct Block {
    const CalibrationBlock* form;
    long line;
    size_t count;                   // values in the file
    std::vector<ValueText> values;  // the first of them, at most one more than the block needs
    long strayText;                 // line of text between the values; 0 if none
};

// An element in the place of a block.
struct UnknownElement {
    std::string name;
    long line;
};

struct Document {
    Refusal refusal = Refusal::NONE;
    std::string encoding;           // as declared; "" without a declaration
    bool hasCommonEncoding = true;  // UTF-8, UTF-16, ISO-8859-1 or ASCII: every libxml2 reads it
    bool isCompressed = false;      // this libxml2 has unpacked the file
    std::vector<XmlMessage> messages;
    std::vector<Block> blocks;
    std::vector<UnknownElement> unknown;

    // The last of the blocks of that name; null when there is none.
    const Block* lastOf(const CalibrationBlock& form) const;
    // The line of the value that the library uses for that index: in the last of the blocks that has it.
    long lineOf(const CalibrationBlock& form, size_t index) const;
};

// Reads a calibration file as the library does, into record, and its text into the result.
Document readDocument(const std::filesystem::path& file, ConfigXmlParser& record);

}  // namespace simulator
