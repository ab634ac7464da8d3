// Checks of a calibration file.
#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "calibration/ConfigXmlParser.h"

namespace simulator {

using ::vendor::kov::hardware::display_control::V1_0::implementation::ConfigXmlParser;

struct Finding {
    enum class Severity { ERROR, WARNING };
    Severity severity;
    long line;                    // in the file; 0 when it has none
    std::string block;            // "" when it is about the whole file
    std::optional<size_t> value;  // the value's number in its block, from 1
    std::string rule;             // short stable name, kebab-case
    std::string what;             // what is wrong
    std::string expected;         // what was expected
};

struct CheckedCalibration {
    std::unique_ptr<ConfigXmlParser> record;  // what the library makes of the file (never null)
    std::vector<Finding> findings;            // in the order of the file
};

// Throws std::runtime_error only when the file cannot be read at all.
CheckedCalibration checkCalibration(const std::filesystem::path& file);

}  // namespace simulator
