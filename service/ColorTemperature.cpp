// The two colour temperatures of a display.
#include "service/DisplayControlImpl.h"

namespace vendor::kov::hardware::display_control::V1_0::implementation {

Return<Result> DisplayControlImpl::setUnlimitedCT(uint64_t /*handle*/, uint64_t display, int32_t level) {
    ColorManager* const colors = servedColors(display);
    if (colors == nullptr) return Result::FAILED;
    colors->setUnlimitedCT(level);
    sendFinalCtm(display);
    return Result::OK;
}

Return<Result> DisplayControlImpl::setEyeCareCT(uint64_t /*handle*/, uint64_t display, int32_t level) {
    ColorManager* const colors = servedColors(display);
    if (colors == nullptr) return Result::FAILED;
    colors->setEyeCareCT(level);
    sendFinalCtm(display);
    return Result::OK;
}

Return<void> DisplayControlImpl::getUnlimitedCT(uint64_t /*handle*/, uint64_t display, const Level& callback) {
    reportLevel(display, &ColorManager::unlimitedCT, callback);
    return Void();
}

Return<void> DisplayControlImpl::getEyeCareCT(uint64_t /*handle*/, uint64_t display, const Level& callback) {
    reportLevel(display, &ColorManager::eyeCareCT, callback);
    return Void();
}

void DisplayControlImpl::reportLevel(uint64_t display, int32_t ColorManager::*level, const Level& callback) const {
    if (knowsDisplay(display)) {
        callback(Result::OK, colorManagers[display].*level);
    } else {
        callback(Result::FAILED, 0);
    }
}

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
