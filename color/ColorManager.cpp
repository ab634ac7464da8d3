#include "color/ColorManager.h"

#include <closed/vo_display.h>
#include <closed/voeyecare.h>
#include <platform/Log.h>
#include <platform/Numbers.h>

namespace vendor::kov::hardware::display_control::V1_0::implementation {

namespace {

constexpr double kSmallestDivisor = 1e-6;

// a x b. Each element is the sum (p0 + p1) + p2 of its three products, every step rounded to float, so that it has the
// same bits everywhere (a NaN its own sign and payload).
TMat33<float> product(const TMat33<float>& a, const TMat33<float>& b) {
    TMat33<float> result;
    for (size_t row = 0; row < TMat33<float>::kSize; row += 3) {
        for (size_t column = 0; column < 3; ++column) {
            result[row + column] = (a[row] * b[column] + a[row + 1] * b[3 + column]) + a[row + 2] * b[6 + column];
        }
    }
    return result;
}

// The largest output over the seven non-black corners, corner by corner: what maxRgb is.
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

// The same bits for finite elements. A corner adds up some of each row's elements, in their order, and a rounded sum
// never falls when what is added grows: the largest takes each element that is positive and, in place of another, 0.
float largestOfRows(const TMat33<float>& m) {
    float best = 0.0F;
    for (size_t row = 0; row < TMat33<float>::kSize; row += 3) {
        const float out = (positive(m[row]) + positive(m[row + 1])) + positive(m[row + 2]);
        best = best > out ? best : out;
    }
    return best;
}

bool isFinite(const TMat33<float>& m) {
    float zero = 0.0F;  // what is not finite makes it NaN
    for (size_t i = 0; i < TMat33<float>::kSize; ++i) zero += m[i] * 0.0F;
    return zero == 0.0F;
}

}  // namespace

int ColorManager::init(const int32_t* endPoints, const double* eyeCare) {
    if (eyeCare != nullptr) {
        EyeCareParams params{std::vector<double>(eyeCare + 2, eyeCare + kEyeCareRun), platform::toInt32(eyeCare[0]),
                             platform::toInt32(eyeCare[1])};
        setEyeCareParamsOled(params);
        LOG_DEBUG("m:%d m:%d", params.maxCCT, params.minCCT);
    } else {
        LOG_ERROR("eye care init error");
    }

    if (endPoints != nullptr) {
        setParams(endPoints[0], endPoints[1]);
        LOG_DEBUG("w:%.8X c:%.8X", static_cast<uint32_t>(endPoints[0]), static_cast<uint32_t>(endPoints[1]));
    } else {
        setParams(kDefaultWarm, kDefaultCold);
        LOG_ERROR("Unlimited init error");
    }
    return 0;
}

int ColorManager::setUnlimitedCT(int32_t level) {
    std::array<float, 3> gains{1.0F, 1.0F, 1.0F};
    unlimitedCT = level;
    const int error = getUnlimitedCTParams(level, gains.data());
    if (error != 0) LOG_ERROR("error %d", error);
    for (size_t channel = 0; channel < gains.size(); ++channel) unlimitedCtm[4 * channel] = gains[channel];
    LOG_DEBUG("%d  %f %f %f", level, gains[0], gains[1], gains[2]);
    return 0;
}

int ColorManager::setEyeCareCT(int32_t level) {
    TMat33<float> coefficients;
    eyeCareCT = level;
    const int error = getEyeCareCoeffOled(level, coefficients.data());
    if (error != 0) LOG_ERROR("error %d", error);
    eyeCareCtm = coefficients;
    LOG_DEBUG("v:%d", level);
    LOG_DEBUG("%f %f %f", coefficients[0], coefficients[1], coefficients[2]);
    LOG_DEBUG("%f %f %f", coefficients[3], coefficients[4], coefficients[5]);
    LOG_DEBUG("%f %f %f", coefficients[6], coefficients[7], coefficients[8]);
    return 0;
}

// The running sums are ((0 + p0) + p1) + p2. The 0 is added once, at the end of the chain: all it ever does is to make
// -0 a 0, and a zero's sign passes through a product into signs of zeros only.
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
