// SPDX-License-Identifier: Apache-2.0
#include "simulator/closed/UnlimitedColorTemperature.h"

#include <algorithm>
#include <cstdlib>

namespace simulator {

namespace {

constexpr int kWhite = 0xFFFFFF;
constexpr Vec3 kNeutral = {1.0, 1.0, 1.0};

bool isColor(int value) {
    return value >= 0 && value <= kWhite;
}

bool isLevel(int level) {
    return level >= kUnlimitedWarmest && level <= kUnlimitedColdest;
}

double linearChannel(int color, int shift) {
    return srgbToLinear(((color >> shift) & 0xFF) / 255.0);
}

}  // namespace

bool areColors(const EndPoints& endPoints) {
    return isColor(endPoints.warm) && isColor(endPoints.cold);
}

std::optional<Vec3> unlimitedGains(const EndPoints& endPoints, int level) {
    if (!areColors(endPoints) || !isLevel(level)) return std::nullopt;
    const int end = level < 0 ? endPoints.warm : endPoints.cold;
    if (end == 0) return kNeutral;

    const double t = std::abs(level) / 100.0;
    Vec3 gains = {linearChannel(end, 16), linearChannel(end, 8), linearChannel(end, 0)};
    for (double& gain : gains) gain = (1.0 - t) + t * gain;
    return scaledToLargest(gains);
}

}  // namespace simulator
