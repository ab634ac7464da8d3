// SPDX-License-Identifier: Apache-2.0
// Recorded light.
#pragma once

#include <chrono>
#include <deque>
#include <filesystem>

namespace simulator {

struct TracePoint {
    std::chrono::milliseconds time;  // since the start of the recording
    float lux;                       // from then on
};
using LightTrace = std::deque<TracePoint>;  // of a month and more: it grows without a copy

// Reads a CSV file of two columns, seconds and lux; the first line that holds something may be the header seconds,lux,
// blank lines are skipped, and a byte order mark may precede them. Times do not fall and are at most 10^8 s; lux is 0
// or more. Throws std::runtime_error, "FILE:LINE: what is wrong; what was expected", and so for a file without a
// sample.
LightTrace readLightTrace(const std::filesystem::path& file);

}  // namespace simulator
