// SPDX-License-Identifier: Apache-2.0
// The sample recordings of light.
#pragma once

#include <string>
#include <vector>

namespace simulator {

// A recording and what it is about.
struct NamedLightTrace {
    std::string name;  // of the file, without its ending
    std::string csv;
};

std::vector<NamedLightTrace> sampleLightTraces();

}  // namespace simulator
