// SPDX-License-Identifier: Apache-2.0
// A session as a report shows it: what each line did to the picture, and the calls of the composer.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "color/ColorManager.h"
#include "simulator/Colorimetry.h"
#include "tools/session/ScriptFile.h"
#include "tools/session/SessionEvent.h"

namespace simulator {

namespace implementation = ::vendor::kov::hardware::display_control::V1_0::implementation;
using implementation::ColorManager;

// The test chart as a display shows it.
struct PictureRecord {
    std::vector<uint8_t> png;
    uint64_t pixels;
    uint64_t clippedPixels;
    std::vector<uint8_t> marked;  // PNG that shows the clipped pixels in magenta; empty if nothing is clipped
};

// A line of the script.
struct StepRecord {
    size_t line;
    std::string text;
    std::string comment;         // from '#' on
    std::vector<Value> answers;  // of the operations that it called
    // The numbers of the pictures of display 0; nothing without a composer, and beyond the last picture that is kept.
    std::optional<size_t> before, after;
};

struct CallRecord {
    int64_t milliseconds;
    ComposerCall call;
};

struct SessionRecord {
    std::vector<StepRecord> steps;
    std::vector<PictureRecord> pictures;  // the different ones
    std::vector<CallRecord> calls;        // of the composer, in order
    // At the end:
    State state;
    std::optional<ColorManager> colors;       // of display 0; nothing when the service does not know it
    std::optional<Chromaticity> driverWhite;  // as the panel's driver reports it
};

// Carries out a script on a fresh copy of the sample phone with the calibration, if any, instead of its
// panel's. Of the commands, picture has nothing to do here and is left out. No more than 60 different pictures are
// kept. Throws std::runtime_error, "NAME:LINE: what is wrong; what was expected".
SessionRecord recordSession(const ScriptFile& script, const std::optional<std::filesystem::path>& calibration);

}  // namespace simulator
