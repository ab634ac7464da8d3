// SPDX-License-Identifier: Apache-2.0
// The three screen modes.
#include <closed/displayppalgorithm.h>
#include <platform/Answer.h>
#include <platform/DeviceFiles.h>
#include <platform/Log.h>

#include <algorithm>
#include <cinttypes>
#include <iterator>

#include "service/Composer.h"
#include "service/DefaultPanel.h"
#include "service/DisplayControlImpl.h"
#include "service/SysfsNodes.h"
#include "service/WhitePointText.h"

namespace vendor::kov::hardware::display_control::V1_0::implementation {

Return<int32_t> DisplayControlImpl::setStandardMode(uint64_t /*handle*/, uint64_t display, int32_t /*value*/) {
    PLATFORM_LOG_DEBUG("enter");
    ColorManager* const colors = servedColors(display);
    if (colors == nullptr) return kFailed;
    colors->ccmCtm = colors->calibCcmCtm;
    colors->wpcCtm = colors->calibWpcCtm;
    return enterScreenMode(display, *colors, STANDARD, kCabcOff);
}

Return<int32_t> DisplayControlImpl::setEnhanceScreenMode(uint64_t /*handle*/, uint64_t display, int32_t /*value*/) {
    PLATFORM_LOG_DEBUG("enter");
    ColorManager* const colors = servedColors(display);
    if (colors == nullptr) return kFailed;
    colors->ccmCtm = {};
    colors->wpcCtm = {};
    return enterScreenMode(display, *colors, ENHANCED, kCabcOff);
}

Return<int32_t> DisplayControlImpl::setSmartEnvironmentMode(uint64_t /*handle*/, uint64_t display, int32_t /*value*/) {
    ColorManager* const colors = servedColors(display);
    if (colors == nullptr) return kFailed;
    colors->ccmCtm = {};
    colors->wpcCtm = {};

    ::android::WhitePointCalibrateParam param = kDefaultWhitePoint;
    if (hasWpcParam) std::copy(std::begin(wpcParam), std::end(wpcParam), std::begin(param.params));

    constexpr size_t kLimit = 64;  // bytes
    const platform::NodeText node = platform::readNode(kWhitePointNode, kLimit);
    if (node.status == platform::NodeStatus::OPEN_FAILED) {
        PLATFORM_LOG_ERROR("open wpc node error");
    } else if (node.status == platform::NodeStatus::READ_FAILED) {
        PLATFORM_LOG_ERROR("read wpc node error");
    } else if (const auto white = parseWhitePoint(node.text); !white) {
        PLATFORM_LOG_ERROR("format wpc error");
    } else {
        constexpr double kThousandth = 0.001;
        param.whiteX = static_cast<float>(white->x * kThousandth);
        param.whiteY = static_cast<float>(white->y * kThousandth);
        PLATFORM_LOG_DEBUG("%" PRId32 " %" PRId32 " %f %f", white->x, white->y, param.whiteX, param.whiteY);
    }

    ::android::DisplayPostProcessingAlgorithm algorithm;
    algorithm.WhitePointCalibrate(&param);
    colors->wpcCtm[0] = param.gainR;
    colors->wpcCtm[4] = param.gainG;
    colors->wpcCtm[8] = param.gainB;
    PLATFORM_LOG_DEBUG("%f %f %f", param.gainR, param.gainG, param.gainB);
    return enterScreenMode(display, *colors, SMART_ENVIRONMENT, kCabcOn);
}

int32_t DisplayControlImpl::enterScreenMode(uint64_t display, const ColorManager& colors, ScreenMode mode,
                                            int32_t cabcLevel) {
    sendFinalCtm(display, colors);
    screenMode = mode;
    platform::dropAnswer(setCabcSysNode(/*handle=*/0, display, cabcLevel));
    return kOk;
}

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
