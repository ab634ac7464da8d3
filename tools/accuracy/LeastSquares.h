// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <vector>

namespace simulator {

// The residuals for parameters; their number does not change. May replace parameters that are not allowed by the
// nearest ones that are.
using Residuals = std::function<std::vector<double>(std::vector<double>& parameters)>;

// The parameters near start that minimise the sum of the squared residuals, which must be finite at start. Parameters
// should be of the order of 1. The same result on every run.
std::vector<double> minimizeSquares(const Residuals& residuals, std::vector<double> start);

}  // namespace simulator
