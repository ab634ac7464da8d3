// SPDX-License-Identifier: Apache-2.0
// Accuracy and its limits as JSON.
#pragma once

#include <filesystem>

#include "tools/accuracy/Accuracy.h"
#include "tools/json/Json.h"

namespace simulator {

// The defaults, replaced by those that a JSON file gives: an object with members named as those of Limits. Throws
// std::runtime_error, "FILE: what is wrong; what was expected".
Limits readLimits(const std::filesystem::path& file);

// Every figure, not rounded. null: not measured, not known, or not defined for that colour.
Json accuracyToJson(const Accuracy& accuracy);

}  // namespace simulator
