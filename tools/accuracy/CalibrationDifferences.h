// SPDX-License-Identifier: Apache-2.0
// What differs between two calibrations.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "calibration/ConfigXmlParser.h"
#include "tools/accuracy/Colorimetry.h"
#include "tools/accuracy/PanelModel.h"
#include "tools/accuracy/Target.h"
#include "tools/picture/DisplayPipeline.h"

namespace simulator {

// The values that differ most.
struct LargestDifference {
    size_t value;  // its number, from 1
    double before, after;
};

// Before and after with the fewest digits that name them exactly, as floats if both are.
std::pair<std::string, std::string> textsOf(const LargestDifference& difference);

struct BlockDifference {
    std::string block;  // or what the composer receives
    bool wasComplete = true;
    bool isComplete = true;
    size_t differing = 0;  // values; 0 where only one of the two is complete
    std::optional<LargestDifference> largest;
};

// The blocks that are not the same, bit for bit, in the file's order. A value with a name precedes those by position.
std::vector<BlockDifference> differencesOf(
    const ::vendor::kov::hardware::display_control::V1_0::implementation::ConfigXmlParser& before,
    const ::vendor::kov::hardware::display_control::V1_0::implementation::ConfigXmlParser& after);

// The same for the matrix and the gamma table that two composers hold.
std::vector<BlockDifference> differencesOf(const DisplayState& before, const DisplayState& after);

// Delta E 2000 between what a panel shows behind both, over the ColorChecker, relative to the target's white. Both
// whites are scaled to Y = 100.
ColorErrors compareShown(const DisplayState& before, const DisplayState& after, const PanelModel& panel,
                         const Target& target);

// What dcsim diff says.
struct CalibrationDifferences {
    std::vector<BlockDifference> blocks;    // of the files
    std::vector<BlockDifference> composer;  // of what the composer receives in standard mode
    std::optional<ColorErrors> shown;       // with a panel
};

// "CTM_WPC: 2 values differ, most of all value 5: 0.961 was 0.967".
std::string sentenceOf(const BlockDifference& difference);

}  // namespace simulator
