// The three screen modes.
#include <closed/displayppalgorithm.h>
#include <platform/Answer.h>
#include <platform/DeviceFiles.h>
#include <platform/Log.h>

#include <algorithm>
#include <iterator>

#include "service/Composer.h"
#include "service/DefaultPanel.h"
#include "service/DisplayControlImpl.h"
#include "service/WhitePointText.h"

namespace vendor::kov::hardware::display_control::V1_0::implementation {

namespace {

constexpr const char* kWhitePointNode = "/sys/bus/platform/devices/30620000.dsi/30620000.dsi.0/lcd_whitepoint_info";
constexpr size_t kWhitePointLimit = 64;  // bytes

constexpr int32_t kCabcOff = 0;
constexpr int32_t kCabcOn = 1;

}  // namespace

Return<int32_t> DisplayControlImpl::setStandardMode(uint64_t /*handle*/, uint64_t display, int32_t /*value*/) {
    LOG_DEBUG("enter");
    ColorManager* const colors = servedColors(display);
    if (colors == nullptr) return static_cast<int32_t>(Result::FAILED);
    colors->ccmCtm = colors->calibCcmCtm;
    colors->wpcCtm = colors->calibWpcCtm;
    return enterScreenMode(display, STANDARD, kCabcOff);
}

Return<int32_t> DisplayControlImpl::setEnhanceScreenMode(uint64_t /*handle*/, uint64_t display, int32_t /*value*/) {
    LOG_DEBUG("enter");
    ColorManager* const colors = servedColors(display);
    if (colors == nullptr) return static_cast<int32_t>(Result::FAILED);
    colors->ccmCtm = {};
    colors->wpcCtm = {};
    return enterScreenMode(display, ENHANCED, kCabcOff);
}

Return<int32_t> DisplayControlImpl::setSmartEnvironmentMode(uint64_t /*handle*/, uint64_t display, int32_t /*value*/) {
    ColorManager* const colors = servedColors(display);
    if (colors == nullptr) return static_cast<int32_t>(Result::FAILED);
    colors->ccmCtm = {};
    colors->wpcCtm = {};

    android::WhitePointCalibrateParam param = kDefaultWhitePoint;
    if (hasWpcParam) std::copy(std::begin(wpcParam), std::end(wpcParam), std::begin(param.params));

    const platform::NodeText node = platform::readNode(kWhitePointNode, kWhitePointLimit);
    if (node.status == platform::NodeStatus::OPEN_FAILED) {
        LOG_ERROR("open wpc node error");
    } else if (node.status == platform::NodeStatus::READ_FAILED) {
        LOG_ERROR("read wpc node error");
    } else if (const auto white = parseWhitePoint(node.text); !white) {
        LOG_ERROR("format wpc error");
    } else {
        constexpr double kThousandth = 0.001;
        param.whiteX = static_cast<float>(white->x * kThousandth);
        param.whiteY = static_cast<float>(white->y * kThousandth);
        LOG_DEBUG("%d %d %f %f", white->x, white->y, static_cast<double>(param.whiteX),
                  static_cast<double>(param.whiteY));
    }

    android::DisplayPostProcessingAlgorithm algorithm;
    algorithm.WhitePointCalibrate(&param);
    colors->wpcCtm[0] = param.gainR;
    colors->wpcCtm[4] = param.gainG;
    colors->wpcCtm[8] = param.gainB;
    LOG_DEBUG("%f %f %f", param.gainR, param.gainG, param.gainB);
    return enterScreenMode(display, SMART_ENVIRONMENT, kCabcOn);
}

int32_t DisplayControlImpl::enterScreenMode(uint64_t display, ScreenMode mode, int32_t cabcLevel) {
    sendFinalCtm(display);
    screenMode = mode;
    platform::dropAnswer(setCabcSysNode(/*handle=*/0, display, cabcLevel));
    return static_cast<int32_t>(Result::OK);
}

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
