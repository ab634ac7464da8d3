// SPDX-License-Identifier: Apache-2.0
// Smooths the light level.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace vendor::kov::hardware::display_control::V1_0::implementation {

// The tone curve turns on above kBrightLux and off below kDimLux.
constexpr int32_t kBrightLux = 8000;
constexpr int32_t kDimLux = 5000;

// A ring of the last five light samples, in lux. The first sample and a fast reset fill the whole ring. Plain
// arithmetic: no thread, no clock.
struct LightFilter {
    static constexpr size_t kSamples = 5;

    // Adds a sample and returns the mean of the middle three.
    int32_t add(int32_t lux, bool curveActive);

    bool firstSample = true;
    std::array<int32_t, kSamples> luxSamples{-1, -1, -1, -1, -1};
    size_t samplePos = 0;  // slot of the next sample, 0 to kSamples; kSamples means slot 0
};

// Whether a sample and the previous one are both below kDimLux while the curve is on, or both above kBrightLux while it
// is off.
bool isFastReset(int32_t lux, int32_t previousLux, bool curveActive);

// Mean of the middle three of five samples, truncated toward zero: one outlier does not change it.
int32_t meanOfMiddle(const std::array<int32_t, LightFilter::kSamples>& samples);

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
