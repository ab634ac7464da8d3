// SPDX-License-Identifier: Apache-2.0
// User handles and display queries.
#include <platform/Log.h>

#include <atomic>
#include <cinttypes>

#include "service/DisplayControlImpl.h"
#include "service/NextHandle.h"

namespace vendor::kov::hardware::display_control::V1_0::implementation {

namespace {

std::atomic<uint64_t> userHandleCount{0};  // the last allocated handle, of all service objects

}  // namespace

Return<void> DisplayControlImpl::allocUserHandle(uint32_t /*value*/,
                                                 const std::function<void(Result, uint64_t)>& callback) {
    uint64_t last = userHandleCount.load();
    uint64_t handle = 0;
    do handle = nextHandle(last);
    while (!userHandleCount.compare_exchange_weak(last, handle));
    callback(Result::OK, handle);
    PLATFORM_LOG_INFO("%" PRIu64, handle);
    return Void();
}

Return<Result> DisplayControlImpl::freeUserHandle(uint64_t handle) {
    PLATFORM_LOG_INFO("%" PRIu64, handle);
    return Result::OK;
}

Return<void> DisplayControlImpl::getNumOfDisplay(uint64_t handle,
                                                 const std::function<void(Result, uint32_t)>& callback) {
    PLATFORM_LOG_INFO("%" PRIu64, handle);
    callback(Result::OK, static_cast<uint32_t>(numOfDisplay));
    return Void();
}

Return<void> DisplayControlImpl::getDisplayInfo(uint64_t handle, uint64_t display,
                                                const std::function<void(Result, const DisplayInfo&)>& callback) {
    PLATFORM_LOG_INFO("%" PRIu64, handle);
    if (knowsDisplay(display)) {
        callback(Result::OK, displayInfos[display]);
    } else {
        callback(Result::BAD_DISPLAY, DisplayInfo{{}, "0"});
    }
    return Void();
}

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
