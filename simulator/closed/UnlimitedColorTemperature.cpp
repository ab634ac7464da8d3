#include "simulator/closed/UnlimitedColorTemperature.h"

#include <algorithm>
#include <cstdlib>

#include "simulator/closed/Configuration.h"

namespace simulator {

namespace {

constexpr int kWhite = 0xFFFFFF;
constexpr Vec3 kNeutral = {1.0, 1.0, 1.0};

Configuration<EndPoints>& configuration() {
    static Configuration<EndPoints> endPoints;
    return endPoints;
}

bool isColor(int value) {
    return value >= 0 && value <= kWhite;
}

bool areColors(const EndPoints& endPoints) {
    return isColor(endPoints.warm) && isColor(endPoints.cold);
}

bool isLevel(int level) {
    return level >= kUnlimitedWarmest && level <= kUnlimitedColdest;
}

double linearChannel(int color, int shift) {
    return srgbToLinear(((color >> shift) & 0xFF) / 255.0);
}

}  // namespace

std::optional<Vec3> unlimitedGains(const EndPoints& endPoints, int level) {
    if (!areColors(endPoints) || !isLevel(level)) return std::nullopt;
    const int end = level < 0 ? endPoints.warm : endPoints.cold;
    if (end == 0) return kNeutral;

    const double t = std::abs(level) / 100.0;
    Vec3 gains = {linearChannel(end, 16), linearChannel(end, 8), linearChannel(end, 0)};
    for (double& gain : gains) gain = (1.0 - t) + t * gain;
    return scaledToLargest(gains);
}

void resetUnlimitedColorTemperature() {
    configuration().clear();
}

}  // namespace simulator

int setParams(int warm, int cold) {
    const simulator::EndPoints endPoints = {warm, cold};
    if (!simulator::areColors(endPoints)) return simulator::kUnlimitedBadColor;
    simulator::configuration().set(endPoints);
    return 0;
}

int getUnlimitedCTParams(int level, float* gains) {
    const auto endPoints = simulator::configuration().get();
    if (!endPoints) return simulator::kUnlimitedNotConfigured;
    const auto computed = simulator::unlimitedGains(*endPoints, level);
    if (!computed) return simulator::kUnlimitedBadLevel;
    std::transform(computed->begin(), computed->end(), gains, [](double gain) { return static_cast<float>(gain); });
    return 0;
}
