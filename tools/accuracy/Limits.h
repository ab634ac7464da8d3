// SPDX-License-Identifier: Apache-2.0
// What the figures must keep to.
#pragma once

#include <optional>
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

struct Verdict {
    std::string figure;           // with its unit, as it is shown
    std::optional<double> value;  // nothing if it was not measured, or if the panel can show no patch of a chart
    double limit;
    bool isLeast;                // the value must be at least the limit, otherwise at most
    std::optional<bool> isKept;  // nothing if it was not measured
};

// One for each figure that has a limit.
std::vector<Verdict> judge(const Figures& figures, const Limits& limits);

}  // namespace simulator
