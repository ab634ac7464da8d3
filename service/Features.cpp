// SPDX-License-Identifier: Apache-2.0
// Features by number: one entry for screen modes, colour temperatures and backlight control.
#include <platform/Answer.h>
#include <platform/Log.h>
#include <platform/Numbers.h>

#include <cinttypes>

#include "service/DisplayControlImpl.h"

namespace vendor::kov::hardware::display_control::V1_0::implementation {

Return<int32_t> DisplayControlImpl::setFeature(uint64_t handle, uint64_t display, int32_t feature, int32_t value,
                                               int32_t value2) {
    PLATFORM_LOG_DEBUG("u:%" PRIu64 " d:%" PRIu64 " m:%" PRId32 " v:%" PRId32 " c:%" PRId32, handle, display, feature,
                       value, value2);
    switch (feature) {
        case 0:
            platform::dropAnswer(setSmartEnvironmentMode(handle, display, value));
            return kOk;
        case 1:
            platform::dropAnswer(setEnhanceScreenMode(handle, display, value));
            return kOk;
        case 2:
            platform::dropAnswer(setStandardMode(handle, display, value));
            return kOk;
        case 3:
            return static_cast<int32_t>(setLevel(display, &ColorManager::setEyeCareCT, value));
        case 7:
            return setCabcMode(handle, display, value);
        case 23:
            return static_cast<int32_t>(setLevel(display, &ColorManager::setUnlimitedCT, value));
        default:
            return kFailed;
    }
}

Return<void> DisplayControlImpl::setMiscFeature(uint64_t handle, uint64_t display, int32_t feature,
                                                const hidl_vec<double>& values, const FeatureValues& callback) {
    constexpr size_t kValues = 2;
    int32_t result = kFailed;
    if (values.size() == kValues) {
        result = setFeature(handle, display, feature, platform::toInt32(values[0]), platform::toInt32(values[1]));
    }
    callback(static_cast<Result>(result), {});
    return Void();
}

Return<void> DisplayControlImpl::getMiscFeature(uint64_t /*handle*/, uint64_t /*display*/, int32_t /*feature*/,
                                                const FeatureValues& callback) {
    callback(Result::FAILED, {});
    return Void();
}

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
