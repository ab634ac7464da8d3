// SPDX-License-Identifier: Apache-2.0
// The repository's data folder.
#pragma once

#include <filesystem>

namespace simulator {

// Writes the sample data into the folder, which is made if need be: chart.png, and under phone/ the tree of a phone
// fitted with panel 0a (calibration files and the panel's nodes). Files of the same names are replaced, others left.
// Throws std::runtime_error, "FILE: what is wrong; what was expected".
void writeSampleData(const std::filesystem::path& folder);

}  // namespace simulator
