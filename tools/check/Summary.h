// SPDX-License-Identifier: Apache-2.0
// What the library makes of a calibration, for people and for programs.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "simulator/Event.h"
#include "tools/check/Check.h"

namespace simulator {

struct BlockSummary {
    BlockCount count;
    bool complete;
    std::string use;                                     // what the service does with the block, or does without it
    std::vector<std::pair<std::string, Value>> content;  // by name; empty if the block is not complete
};

struct Summary {
    std::optional<std::string> gammaTableSent;  // the block that it comes from
    std::vector<BlockSummary> blocks;           // every block that a calibration may have
};

Summary summaryOf(const CheckedCalibration& checked);

// A line a block, each indented by two; just one line when the file has none.
std::string textOf(const Summary& summary);

}  // namespace simulator
