#include "simulator/closed/WhitePoint.h"

#include <algorithm>

namespace simulator {

std::optional<Vec3> whitePointGains(const Primaries& primaries, const Chromaticity& white) {
    const auto toXyz = rgbToXyz(primaries, white);
    const auto toRgb = toXyz ? inverse(*toXyz) : std::nullopt;
    if (!toRgb) return std::nullopt;
    const Vec3 gains = multiply(*toRgb, xyzOf(kD65));
    if (!std::all_of(gains.begin(), gains.end(), [](double gain) { return gain > 0.0; })) return std::nullopt;
    return scaledToLargest(gains);
}

}  // namespace simulator

namespace android {

DisplayPostProcessingAlgorithm::DisplayPostProcessingAlgorithm() = default;
DisplayPostProcessingAlgorithm::~DisplayPostProcessingAlgorithm() = default;

int DisplayPostProcessingAlgorithm::WhitePointCalibrate(WhitePointCalibrateParam* param) {
    const float* const x = param->params;
    const float* const y = param->params + 3;
    const auto gains =
        simulator::whitePointGains({{x[0], y[0]}, {x[1], y[1]}, {x[2], y[2]}}, {param->whiteX, param->whiteY});
    if (!gains) return simulator::kWhitePointImpossible;
    param->gainR = static_cast<float>((*gains)[0]);
    param->gainG = static_cast<float>((*gains)[1]);
    param->gainB = static_cast<float>((*gains)[2]);
    return 0;
}

}  // namespace android
