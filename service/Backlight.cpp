// SPDX-License-Identifier: Apache-2.0
// Content-adaptive backlight control (CABC) of the panel, through its driver's sysfs node.
#include <platform/DeviceFiles.h>
#include <platform/Log.h>

#include <array>
#include <cinttypes>

#include "service/DisplayControlImpl.h"
#include "service/SysfsNodes.h"

namespace vendor::kov::hardware::display_control::V1_0::implementation {

namespace {

// Level of each mode; two modes share level 1.
constexpr std::array<int32_t, 5> kCabcLevelOfMode = {0, 1, 1, 2, 3};

}  // namespace

Return<int32_t> DisplayControlImpl::setCabcSysNode(uint64_t /*handle*/, uint64_t /*display*/, int32_t level) {
    const char bytes[] = {static_cast<char>(static_cast<uint32_t>(level) + '0'), '\n'};
    if (platform::writeNode(kCabcNode, {bytes, sizeof bytes}) != platform::NodeStatus::OK) {
        PLATFORM_LOG_ERROR("open cabc node error");
        return kFailed;
    }
    return kOk;
}

Return<int32_t> DisplayControlImpl::setCabcMode(uint64_t handle, uint64_t display, int32_t mode) {
    if (screenMode != SMART_ENVIRONMENT) return kOk;
    PLATFORM_LOG_DEBUG("enter %" PRId32, mode);
    if (mode < 0 || static_cast<size_t>(mode) >= kCabcLevelOfMode.size()) {
        PLATFORM_LOG_ERROR("invalid value");
        return kFailed;
    }
    return setCabcSysNode(handle, display, kCabcLevelOfMode[static_cast<size_t>(mode)]);
}

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
