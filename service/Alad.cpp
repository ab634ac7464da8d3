// The ambient-light adaptive display's switch.
#include <platform/Log.h>
#include <platform/OutOfMemory.h>

#include "alad/DisplayAlad.h"
#include "service/DisplayControlImpl.h"

namespace vendor::kov::hardware::display_control::V1_0::implementation {

Return<Result> DisplayControlImpl::setAlad(uint64_t handle, uint64_t display, uint32_t enable) {
    LOG_INFO("%lu %d", handle, static_cast<int32_t>(enable));
    if (display != 0) return Result::FAILED;
    if (enable == 0) {
        stopAlad();
        return Result::OK;
    }
    if (displayAlad != nullptr) return Result::OK;
    if (composerExt == nullptr) return Result::FAILED;

    displayAlad = platform::unlessOutOfMemory<DisplayAlad*>(nullptr, [this] {
        auto controller = std::make_unique<DisplayAlad>(composerExt);
        return controller->enable() == 0 ? controller.release() : nullptr;
    });
    return displayAlad != nullptr ? Result::OK : Result::FAILED;
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
