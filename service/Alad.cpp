// SPDX-License-Identifier: Apache-2.0
// Switches the ambient-light adaptive display.
#include <platform/Log.h>

#include <cinttypes>

#include "alad/DisplayAlad.h"
#include "service/DisplayControlImpl.h"

namespace vendor::kov::hardware::display_control::V1_0::implementation {

Return<Result> DisplayControlImpl::setAlad(uint64_t handle, uint64_t display, uint32_t enable) {
    PLATFORM_LOG_INFO("%" PRIu64 " %" PRId32, handle, static_cast<int32_t>(enable));
    if (display != 0) return Result::FAILED;
    if (enable == 0) {
        stopAlad();
        return Result::OK;
    }
    if (displayAlad != nullptr) return Result::OK;
    if (composerExt == nullptr) return Result::FAILED;

    displayAlad = new DisplayAlad(composerExt);
    if (displayAlad->enable() == 0) return Result::OK;
    delete displayAlad;
    displayAlad = nullptr;
    return Result::FAILED;
}

Return<int32_t> DisplayControlImpl::IsAladEnable(uint64_t /*handle*/, uint64_t /*display*/) {
    return displayAlad != nullptr ? 1 : 0;
}

void DisplayControlImpl::stopAlad() {
    if (displayAlad == nullptr) return;
    displayAlad->disable();
    delete displayAlad;
    displayAlad = nullptr;
}

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
