// SPDX-License-Identifier: Apache-2.0
// Whether a panel's calibration file is sound: what the library makes of it, and what looks wrong.
#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "calibration/ConfigXmlParser.h"
#include "simulator/Colorimetry.h"

namespace simulator {

using vendor::kov::hardware::display_control::V1_0::implementation::CalibrationBlock;
using vendor::kov::hardware::display_control::V1_0::implementation::ConfigXmlParser;

struct Finding {
    // An error: the library does not use the text, or reads it as something else. A warning: the library uses the value
    // as written, and the display will show it.
    enum class Severity { ERROR, WARNING };
    Severity severity;
    long line;                    // in the file; 0 when it has none
    std::string block;            // "" when it is about the whole file
    std::optional<size_t> value;  // the value's number in its block, from 1
    std::string rule;             // short stable name, kebab-case
    std::string what;             // what is wrong, as said of the value, the block or the file: "is empty"
    std::string expected;         // what was expected; "" where more is above 0
    size_t more = 0;              // above 0: represents that many more findings of the rule in the block
};

// What the file has of a block.
struct BlockCount {
    const CalibrationBlock* block;
    long line;      // 0: the file has no such block; otherwise where the last of that name begins
    size_t values;  // in the file, those included that are too many
};

struct CheckedCalibration {
    std::unique_ptr<ConfigXmlParser> record;  // what the library makes of the file (never null)
    std::vector<Finding> findings;            // in the order of the file
    std::vector<BlockCount> blocks;           // every block that a calibration may have
};

// Findings of one rule in one block that are listed; the others are one finding that counts them.
constexpr size_t kMostFindings = 5;

// driverWhite: the white that the panel's driver reports, which standard mode should bring to D65, if it is known.
// Reads the file once, as the library does. Throws std::runtime_error if the file cannot be opened; a file that the
// library refuses is a finding. One thread at a time: reading cleans up libxml2's global state.
CheckedCalibration checkCalibration(const std::filesystem::path& file,
                                    const std::optional<Chromaticity>& driverWhite = {});

struct CheckedFile {
    std::string name;
    std::optional<CheckedCalibration> checked;  // nothing if the file cannot be read
    std::string error = {};                     // why not
};
struct CheckedFiles {
    std::vector<CheckedFile> files;
    size_t errors = 0;  // of all files, as countOf counts them
    size_t warnings = 0;
    size_t unreadable = 0;
};
// Checks every file, those too that follow one that cannot be read.
CheckedFiles checkFiles(const std::vector<std::string>& names, const std::optional<Chromaticity>& driverWhite = {});

// "Gamma_Calib: value 113 is lower than the one before it; expected a table that does not fall".
std::string sentenceOf(const Finding& finding);

// How many findings of a severity there are, those included that are counted and not listed.
size_t countOf(const std::vector<Finding>& findings, Finding::Severity severity);

}  // namespace simulator
