// SPDX-License-Identifier: Apache-2.0
#include "simulator/closed/ToneCurve.h"

#include <algorithm>
#include <cmath>

namespace simulator {

namespace {

constexpr double kDimLux = 100.0;
constexpr double kSunLux = 100000.0;
constexpr double kLargestLift = 0.4;
constexpr double kCurveMax = 4095.0;

ToneCurve makeCurve(int level) {
    const double exponent = 1.0 - kLargestLift * level / kHighestAgtmLevel;
    ToneCurve curve{};
    const double last = static_cast<double>(curve.size() - 1);
    for (size_t k = 0; k < curve.size(); ++k) {
        const double output = kCurveMax * std::pow(static_cast<double>(k) / last, exponent);
        curve[k] = static_cast<int32_t>(std::lround(output));
    }
    return curve;
}

}  // namespace

int toneCurveLevel(int lux) {
    if (lux <= kDimLux) return kLowestAgtmLevel;
    const double level = kHighestAgtmLevel * std::log10(lux / kDimLux) / std::log10(kSunLux / kDimLux);
    return std::min(static_cast<int>(std::lround(level)), kHighestAgtmLevel);
}

const ToneCurve& toneCurve(int level) {
    static const std::vector<ToneCurve> kCurves = [] {
        std::vector<ToneCurve> curves;
        for (int each = kLowestAgtmLevel; each <= kHighestAgtmLevel; ++each) curves.push_back(makeCurve(each));
        return curves;
    }();
    return kCurves[static_cast<size_t>(std::clamp(level, kLowestAgtmLevel, kHighestAgtmLevel))];
}

std::optional<int> levelOfToneCurve(const std::vector<int64_t>& values) {
    for (int level = kLowestAgtmLevel; level <= kHighestAgtmLevel; ++level) {
        const ToneCurve& curve = toneCurve(level);
        if (std::equal(curve.begin(), curve.end(), values.begin(), values.end())) return level;
    }
    return std::nullopt;
}

}  // namespace simulator
