// SPDX-License-Identifier: Apache-2.0
// Where the programs find the sample phone and the test chart.
#pragma once

#include <filesystem>

namespace simulator {

// The folder share/display_control/data beside the folder of the program that runs: installed, or a link that the build
// makes. Throws std::filesystem::filesystem_error if the program's own place is not known.
std::filesystem::path dataFolder();

}  // namespace simulator
