// SPDX-License-Identifier: Apache-2.0
#include "color/ColorManager.h"

#include <closed/vo_display.h>
#include <closed/voeyecare.h>
#include <platform/Log.h>
#include <platform/Numbers.h>

#include <cinttypes>

namespace vendor::kov::hardware::display_control::V1_0::implementation {

namespace {

constexpr double kSmallestDivisor = 1e-6;

// a x b. Each element is (p0 + p1) + p2 of its three products, each step rounded to float: the same bits on every
// processor, except for the sign and payload of a NaN.
TMat33<float> product(const TMat33<float>& a, const TMat33<float>& b) {
    TMat33<float> result;
    for (size_t row = 0; row < TMat33<float>::kSize; row += 3) {
        for (size_t column = 0; column < 3; ++column) {
            result[row + column] = (a[row] * b[column] + a[row + 1] * b[3 + column]) + a[row + 2] * b[6 + column];
        }
    }
    return result;
}

// maxRgb by its definition, corner by corner.
float largestOfCorners(const TMat33<float>& m) {
    constexpr float kCorners[7][3] = {{1, 1, 1}, {1, 1, 0}, {1, 0, 1}, {0, 1, 1}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
    float best = 0.0F;
    for (const auto& [r, g, b] : kCorners) {
        for (size_t row = 0; row < TMat33<float>::kSize; row += 3) {
            const float out = ((m[row] * r + 0.0F) + m[row + 1] * g) + m[row + 2] * b;
            best = best > out ? best : out;
        }
    }
    return best;
}

float positive(float value) {
    return value > 0.0F ? value : 0.0F;
}

// The same value, if all elements are finite. A corner sums a subset of each row's elements, in order, and a rounded
// sum never falls when a term grows: so the largest sum takes the positive elements, and 0 instead of the others.
float largestOfRows(const TMat33<float>& m) {
    float best = 0.0F;
    for (size_t row = 0; row < TMat33<float>::kSize; row += 3) {
        const float out = (positive(m[row]) + positive(m[row + 1])) + positive(m[row + 2]);
        best = best > out ? best : out;
    }
    return best;
}

bool isFinite(const TMat33<float>& m) {
    float zero = 0.0F;  // becomes NaN if an element is not finite
    for (size_t i = 0; i < TMat33<float>::kSize; ++i) zero += m[i] * 0.0F;
    return zero == 0.0F;
}

}  // namespace

int ColorManager::init(const int32_t* endPoints, const double* eyeCare) {
    if (eyeCare != nullptr) {
        EyeCareParams params{std::vector<double>(eyeCare + 2, eyeCare + kEyeCareRun), platform::toInt32(eyeCare[0]),
                             platform::toInt32(eyeCare[1])};
        setEyeCareParamsOled(params);
        PLATFORM_LOG_DEBUG("m:%" PRId32 " m:%" PRId32, params.maxCCT, params.minCCT);
    } else {
        PLATFORM_LOG_ERROR("eye care init error");
    }

    if (endPoints != nullptr) {
        setParams(endPoints[0], endPoints[1]);
        PLATFORM_LOG_DEBUG("w:%.8" PRIX32 " c:%.8" PRIX32, static_cast<uint32_t>(endPoints[0]),
                           static_cast<uint32_t>(endPoints[1]));
    } else {
        setParams(kDefaultWarm, kDefaultCold);
        PLATFORM_LOG_ERROR("Unlimited init error");
    }
    return 0;
}

int ColorManager::setUnlimitedCT(int32_t level) {
    std::array<float, 3> gains{1.0F, 1.0F, 1.0F};
    unlimitedCT = level;
    const int error = getUnlimitedCTParams(level, gains.data());
    if (error != 0) PLATFORM_LOG_ERROR("error %d", error);
    for (size_t channel = 0; channel < gains.size(); ++channel) unlimitedCtm[4 * channel] = gains[channel];
    PLATFORM_LOG_DEBUG("%" PRId32 "  %f %f %f", level, gains[0], gains[1], gains[2]);
    return 0;
}

int ColorManager::setEyeCareCT(int32_t level) {
    TMat33<float> coefficients;
    eyeCareCT = level;
    const int error = getEyeCareCoeffOled(level, coefficients.data());
    if (error != 0) PLATFORM_LOG_ERROR("error %d", error);
    eyeCareCtm = coefficients;
    PLATFORM_LOG_DEBUG("v:%" PRId32, level);
    PLATFORM_LOG_DEBUG("%f %f %f", coefficients[0], coefficients[1], coefficients[2]);
    PLATFORM_LOG_DEBUG("%f %f %f", coefficients[3], coefficients[4], coefficients[5]);
    PLATFORM_LOG_DEBUG("%f %f %f", coefficients[6], coefficients[7], coefficients[8]);
    return 0;
}

// The running sums are ((0 + p0) + p1) + p2. Adding 0 only turns -0 into 0, and the sign of a zero only affects signs
// of zeros in a product: so it is added once, at the end of the chain.
TMat33<float> ColorManager::composedCtm() const {
    TMat33<float> result = product(eyeCareCtm, product(unlimitedCtm, product(wpcCtm, ccmCtm)));
    for (size_t i = 0; i < TMat33<float>::kSize; ++i) result[i] += 0.0F;
    return result;
}

TMat33<float> ColorManager::finalCtm() const {
    TMat33<float> result = composedCtm();
    scaleCCM(result);
    return result;
}

float ColorManager::maxRgb(const TMat33<float>& m) {
    return isFinite(m) ? largestOfRows(m) : largestOfCorners(m);
}

int ColorManager::scaleCCM(TMat33<float>& m) {
    const float largest = maxRgb(m);
    if (static_cast<double>(largest) > kSmallestDivisor) {
        for (size_t i = 0; i < TMat33<float>::kSize; ++i) m[i] /= largest;
    }
    return 0;
}

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
