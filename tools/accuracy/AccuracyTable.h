// SPDX-License-Identifier: Apache-2.0
// Accuracy as a person reads it.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/accuracy/Accuracy.h"

namespace simulator {

// The value and the limit with their units; a row without a verdict is only reported.
struct AccuracyRow {
    std::string figure;
    std::string value;
    std::string limit;           // "at most 2"; empty without one
    std::optional<bool> isKept;  // nothing without a limit or a measured value
};
std::vector<AccuracyRow> rowsOf(const Accuracy& accuracy);

// The patches with the largest delta E 2000, at most count, of those that the panel can show; the largest first.
std::vector<PatchFigure> worstOf(const std::vector<PatchFigure>& patches, size_t count);

// What limits the trust in the figures, a sentence each.
std::vector<std::string> warningsOf(const Accuracy& accuracy);

// "srgb, white x 0.3127 y 0.3290, gamma 2.2"
std::string textOf(const Target& target);

// Rows, warnings, the ColorChecker's worst and clipped patches, colour temperatures over their levels, and the verdict.
std::string textOf(const Accuracy& accuracy);

}  // namespace simulator
