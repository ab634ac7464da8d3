// SPDX-License-Identifier: Apache-2.0
// What the composer holds for display 0 after sessions with the service.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "simulator/Composer.h"
#include "tools/session/ScriptFile.h"

namespace simulator {

// A colour temperature control in standard mode.
struct ControlStates {
    std::string operation;
    DisplayState neutral;                              // before the control is used
    std::vector<std::pair<int, DisplayState>> levels;  // rising
};

struct ServiceStates {
    DisplayState end;                     // after the script
    std::vector<ControlStates> controls;  // on the phone's files as the script left them
    std::string calibration;              // the file of the panel at the end: the given one, or the phone's path
    size_t failedCalls = 0;               // of the composer in the script
};

struct ServiceRun {
    const ScriptFile* script = nullptr;                     // null: the start and standard mode
    std::filesystem::path phone = dataFolder() / "phone";   // a copy is used
    std::optional<std::filesystem::path> calibration = {};  // instead of the panel's
};

// Throws std::runtime_error if a file cannot be read, the script cannot be carried out, or the composer has no display
// 0 at its end.
ServiceStates statesOf(const ServiceRun& run);

}  // namespace simulator
