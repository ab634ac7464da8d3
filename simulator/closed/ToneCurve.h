// SPDX-License-Identifier: Apache-2.0
// Model of the closed tone-curve library of the ambient-light adaptive display (closed/alad_algo_publish.h).
//
// The level of a light of E lux rises with its logarithm, as the brightness of surroundings does to the eye (Fechner,
// Elemente der Psychophysik, 1860):
//
//     level = 64 log10(E / 100) / log10(100000 / 100), rounded, not below 0 nor above 64
//
// from a dim room (100 lux) to full sunlight (100000 lux). The curve of a level lifts the middle tones, which bright
// surroundings wash out, and keeps black and white: with g = 1 - 0.4 level / 64, entry k of 256 is
//
//     4095 (k / 255)^g, rounded
//
// The phone's library may bend its curves differently.
#pragma once

#include <closed/alad_algo_publish.h>

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

namespace simulator {

constexpr int kLowestAgtmLevel = 0;
constexpr int kHighestAgtmLevel = 64;

// Entry k is the output for the coded level k / 255; 4095 represents 1. Never falls; 0 and 4095 at its ends.
using ToneCurve = std::array<int32_t, 256>;

// For any int: below 100 lux, negative values included, the level is 0.
int toneCurveLevel(int lux);

// The curve of a level, which is brought into its range first.
const ToneCurve& toneCurve(int level);

// The level whose curve these values are, the lowest of those that share it; nothing for other values.
std::optional<int> levelOfToneCurve(const std::vector<int64_t>& values);

}  // namespace simulator
