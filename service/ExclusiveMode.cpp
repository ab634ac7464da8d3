// SPDX-License-Identifier: Apache-2.0
// Exclusive mode: a client uses display 0 without any adjustment until it leaves the mode.
#include <platform/Answer.h>
#include <platform/Log.h>

#include <cinttypes>

#include "calibration/ConfigXmlParser.h"
#include "service/Composer.h"
#include "service/DisplayControlImpl.h"
#include "service/SysfsNodes.h"

namespace vendor::kov::hardware::display_control::V1_0::implementation {

namespace {

constexpr uint32_t kEnter = 1;
constexpr uint32_t kLeave = 0;
constexpr float kStandardGamma = 1.0F / 2.2F;

}  // namespace

Return<Result> DisplayControlImpl::exclusiveModeEnter(uint64_t handle, uint32_t value) {
    PLATFORM_LOG_INFO("%" PRIu64 " %" PRId32, handle, static_cast<int32_t>(value));
    if (composerExt == nullptr) return Result::FAILED;
    platform::dropAnswer(composerExt->setExclusiveMode(0, kEnter));
    platform::dropAnswer(composerExt->setColorTransformMatrix(0, toComposer(firstCtm), toComposer(firstCtm)));
    sendPowerTable(0, kStandardGamma);
    stopAlad();
    platform::dropAnswer(setCabcSysNode(handle, 0, kCabcOff));
    return Result::OK;
}

// Restores the matrices in effect, not the stored calibration matrices, and does not configure the closed libraries.
Return<Result> DisplayControlImpl::exclusiveModeExit(uint64_t handle, uint32_t value) {
    PLATFORM_LOG_INFO("%" PRIu64 " %" PRId32, handle, static_cast<int32_t>(value));
    if (composerExt == nullptr) return Result::FAILED;
    platform::dropAnswer(composerExt->setExclusiveMode(0, kLeave));

    const auto record = readCalibration();
    if (ColorManager* const colors = servedColors(0); colors != nullptr) {
        if (record->hasCtmWpc) copyMatrix(record->ctmWpc, colors->wpcCtm);
        if (record->hasCtmCcm) copyMatrix(record->ctmCcm, colors->ccmCtm);
        sendFinalCtm(0, *colors);
    }
    sendCalibratedGamma(*record);
    return Result::OK;
}

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
