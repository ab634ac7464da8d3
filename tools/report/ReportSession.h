// SPDX-License-Identifier: Apache-2.0
// A session as a report shows it: what each line did to the picture, and the calls of the composer.
#pragma once

#include <filesystem>
#include <istream>
#include <optional>
#include <string>

#include "color/ColorManager.h"
#include "simulator/Colorimetry.h"
#include "tools/json/Json.h"

namespace simulator {

using ::vendor::kov::hardware::display_control::V1_0::implementation::ColorManager;

struct SessionRecord {
    Json steps;     // a line each: its text, what was answered, and the numbers of the pictures before and after it
    Json pictures;  // of the test chart on display 0: PNG in base64, and, when pixels are clipped, another that shows
                    // these in magenta
    Json calls;     // of the composer, in order
    Json state;     // at the end
    std::optional<ColorManager> colors;       // of display 0 at the end; nothing when the service does not know it
    std::optional<Chromaticity> driverWhite;  // as the panel's driver reports it at the end
};

// Carries out a script, named name, on a fresh copy of the sample phone with the calibration, if any, in the place of
// its panel's. Of the commands, picture has nothing to do here and is left out. No more than 60 different pictures are
// kept. Throws std::runtime_error, "NAME:LINE: what is wrong; what was expected".
SessionRecord recordSession(std::istream& script, const std::string& name,
                            const std::optional<std::filesystem::path>& calibration);

}  // namespace simulator
