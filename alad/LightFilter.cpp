// SPDX-License-Identifier: Apache-2.0
#include "alad/LightFilter.h"

#include <algorithm>
#include <numeric>

namespace vendor::kov::hardware::display_control::V1_0::implementation {

int32_t LightFilter::add(int32_t lux, bool curveActive) {
    if (samplePos == kSamples) samplePos = 0;
    const size_t previousPos = samplePos == 0 ? kSamples - 1 : samplePos - 1;
    if (firstSample) {
        luxSamples.fill(lux);
        firstSample = false;
    } else {
        luxSamples[samplePos++] = lux;
    }

    if (isFastReset(lux, luxSamples[previousPos], curveActive)) luxSamples.fill(lux);
    return meanOfMiddle(luxSamples);
}

bool isFastReset(int32_t lux, int32_t previousLux, bool curveActive) {
    return curveActive ? lux < kDimLux && previousLux < kDimLux : lux > kBrightLux && previousLux > kBrightLux;
}

int32_t meanOfMiddle(const std::array<int32_t, LightFilter::kSamples>& samples) {
    const auto [smallest, largest] = std::minmax_element(samples.begin(), samples.end());
    const int64_t sum = std::accumulate(samples.begin(), samples.end(), int64_t{0});
    return static_cast<int32_t>((sum - *smallest - *largest) / 3);
}

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
