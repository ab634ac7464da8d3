// SPDX-License-Identifier: Apache-2.0
// What the figures must keep to.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "tools/accuracy/Figures.h"

namespace simulator {

struct Limits {
    double white = 2;                  // delta E 2000, at most
    double greyChroma = 2;             // delta C of a grey, at most
    double gamma = 0.1;                // difference from the target's, at most
    double colorCheckerMean = 1;       // delta E 2000, at most
    double colorCheckerLargest = 2.5;  // delta E 2000, at most
    double coverage = 98;              // percent, at least
};

// The defaults, replaced by those that a JSON file gives: an object with members named as above. Throws
// std::runtime_error, "FILE: what is wrong; what was expected".
Limits readLimits(const std::filesystem::path& file);

struct Verdict {
    std::string figure;
    double value;
    double limit;
    bool isLeast;  // the value must be at least the limit, otherwise at most
    bool isKept;
};

// One for each figure that has a limit; a figure that was not measured has none.
std::vector<Verdict> judge(const Figures& figures, const Limits& limits);

}  // namespace simulator
