// Exclusive mode: a client takes display 0 without any adjustment, and gives it back.
#include <platform/Answer.h>
#include <platform/Log.h>

#include "calibration/ConfigXmlParser.h"
#include "service/Composer.h"
#include "service/DisplayControlImpl.h"

namespace vendor::kov::hardware::display_control::V1_0::implementation {

namespace {

constexpr uint32_t kEnter = 1;
constexpr uint32_t kLeave = 0;
constexpr float kStandardGamma = 1.0F / 2.2F;
constexpr int32_t kCabcOff = 0;

}  // namespace

Return<Result> DisplayControlImpl::exclusiveModeEnter(uint64_t handle, uint32_t value) {
    LOG_INFO("%lu %d", handle, static_cast<int32_t>(value));
    if (composerExt == nullptr) return Result::FAILED;
    platform::dropAnswer(composerExt->setExclusiveMode(0, kEnter));
    platform::dropAnswer(composerExt->setColorTransformMatrix(0, toComposer(firstCtm), toComposer(firstCtm)));
    sendPowerTable(0, kStandardGamma);
    stopAlad();
    platform::dropAnswer(setCabcSysNode(handle, 0, kCabcOff));
    return Result::OK;
}

// The calibration takes effect in the matrices in effect; the closed libraries keep their configuration.
Return<Result> DisplayControlImpl::exclusiveModeExit(uint64_t handle, uint32_t value) {
    LOG_INFO("%lu %d", handle, static_cast<int32_t>(value));
    if (composerExt == nullptr) return Result::FAILED;
    platform::dropAnswer(composerExt->setExclusiveMode(0, kLeave));

    const auto record = readCalibration();
    if (knowsDisplay(0)) {
        ColorManager& colors = colorManagers[0];
        if (record != nullptr && record->hasCtmWpc) copyMatrix(record->ctmWpc, colors.wpcCtm);
        if (record != nullptr && record->hasCtmCcm) copyMatrix(record->ctmCcm, colors.ccmCtm);
        sendFinalCtm(0);
    }
    if (record != nullptr) sendCalibratedGamma(*record);
    return Result::OK;
}

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
