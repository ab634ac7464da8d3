// Smooths the light level.
#pragma once

#include <array>
#include <cstdint>

namespace vendor::kov::hardware::display_control::V1_0::implementation {

// The tone curve goes on above kBrightLux and off below kDimLux.
constexpr int32_t kBrightLux = 8000;
constexpr int32_t kDimLux = 5000;

// A ring of the last five light samples, in lux. The first sample fills it, and so does a fast reset. Values in hand
// only: no thread, no clock.
struct LightFilter {
    static constexpr int32_t kSamples = 5;

    // Takes a sample and returns the mean in force.
    int32_t add(int32_t lux, bool curveActive);

    bool firstSample = true;
    std::array<int32_t, kSamples> luxSamples{-1, -1, -1, -1, -1};
    int32_t samplePos = 0;  // slot of the next sample, 0 to kSamples; kSamples means slot 0
};

// Whether a sample and the one before it both lie beyond the threshold that matters: dim while the curve is on, bright
// while it is off.
bool isFastReset(int32_t lux, int32_t previousLux, bool curveActive);

// The mean of the middle three of five samples, truncated toward zero: one odd sample never moves it.
int32_t meanOfMiddle(const std::array<int32_t, LightFilter::kSamples>& samples);

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
