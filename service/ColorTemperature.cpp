// SPDX-License-Identifier: Apache-2.0
// The two colour temperatures of a display.
#include "service/DisplayControlImpl.h"

namespace vendor::kov::hardware::display_control::V1_0::implementation {

Return<Result> DisplayControlImpl::setUnlimitedCT(uint64_t /*handle*/, uint64_t display, int32_t level) {
    return setLevel(display, &ColorManager::setUnlimitedCT, level);
}

Return<Result> DisplayControlImpl::setEyeCareCT(uint64_t /*handle*/, uint64_t display, int32_t level) {
    return setLevel(display, &ColorManager::setEyeCareCT, level);
}

Return<void> DisplayControlImpl::getUnlimitedCT(uint64_t /*handle*/, uint64_t display, const Level& callback) {
    reportLevel(display, &ColorManager::unlimitedCT, callback);
    return Void();
}

Return<void> DisplayControlImpl::getEyeCareCT(uint64_t /*handle*/, uint64_t display, const Level& callback) {
    reportLevel(display, &ColorManager::eyeCareCT, callback);
    return Void();
}

Result DisplayControlImpl::setLevel(uint64_t display, LevelSetter setter, int32_t level) {
    ColorManager* const colors = servedColors(display);
    if (colors == nullptr) return Result::FAILED;
    (colors->*setter)(level);
    sendFinalCtm(display, *colors);
    return Result::OK;
}

void DisplayControlImpl::reportLevel(uint64_t display, int32_t ColorManager::*level, const Level& callback) const {
    if (knowsDisplay(display)) {
        callback(Result::OK, colorManagers[display].*level);
    } else {
        callback(Result::FAILED, 0);
    }
}

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
