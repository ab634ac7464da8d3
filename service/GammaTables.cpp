// SPDX-License-Identifier: Apache-2.0
// Gamma and de-gamma tables. Calls are forwarded; the service stores no table.
#include <platform/Answer.h>
#include <platform/Log.h>

#include <cinttypes>

#include "calibration/ConfigXmlParser.h"
#include "color/PowerTable.h"
#include "service/Composer.h"
#include "service/DisplayControlImpl.h"

namespace vendor::kov::hardware::display_control::V1_0::implementation {

struct DisplayControlImpl::TableAnswer {
    Result result = Result::OK;
    GammaLut table{};
};

Return<Result> DisplayControlImpl::setGlobalGammaLut(uint64_t handle, uint64_t display, const GammaLut& table) {
    const auto& e = table.entries;
    PLATFORM_LOG_DEBUG("%" PRIu64, handle);
    PLATFORM_LOG_DEBUG("setGlobalGammaLut 96:%f 320:%f 1024:%f 2048:%f 3840:%f", e[96], e[320], e[1024], e[2048],
                       e[3840]);
    return sendGammaTable(display, table.entries.data());
}

Return<Result> DisplayControlImpl::setGlobalDeGammaLut(uint64_t handle, uint64_t display, const GammaLut& table) {
    const auto& e = table.entries;
    PLATFORM_LOG_DEBUG("%" PRIu64, handle);
    PLATFORM_LOG_DEBUG("setGlobalGammaLut 96:%f 320:%f 1024:%f 2048:%f 3840:%f", e[96], e[320], e[1024], e[2048],
                       e[3840]);
    if (composerExt == nullptr) return Result::FAILED;
    platform::dropAnswer(composerExt->setGlobalDeGammaLut(display, toComposer(table.entries.data())));
    return Result::OK;
}

Return<void> DisplayControlImpl::getGlobalGammaLut(uint64_t handle, uint64_t display, const Table& callback) {
    PLATFORM_LOG_DEBUG("%" PRIu64, handle);
    const TableAnswer answer = queryTable(display, &IComposerExt::getGlobalGammaLut);
    callback(answer.result, answer.table);
    return Void();
}

Return<void> DisplayControlImpl::getGlobalDeGammaLut(uint64_t handle, uint64_t display, const Table& callback) {
    PLATFORM_LOG_DEBUG("%" PRIu64, handle);
    const TableAnswer answer = queryTable(display, &IComposerExt::getGlobalDeGammaLut);
    callback(answer.result, answer.table);
    return Void();
}

Return<Result> DisplayControlImpl::setGlobalGamma(uint64_t handle, uint64_t display, float exponent) {
    PLATFORM_LOG_DEBUG("%" PRIu64, handle);
    PLATFORM_LOG_BARE(ANDROID_LOG_INFO, "%f", exponent);
    return sendPowerTable(display, exponent);
}

Result DisplayControlImpl::sendPowerTable(uint64_t display, float exponent) {
    GammaLut table;
    fillPowerTable(table.entries.data(), exponent);
    return sendGammaTable(display, table.entries.data());
}

void DisplayControlImpl::sendCalibratedGamma(const ConfigXmlParser& record) {
    if (record.hasGammaTuning) {
        sendGammaTable(0, record.gammaTuning);
    } else if (record.hasGammaCalib) {
        sendGammaTable(0, record.gammaCalib);
    }
}

Result DisplayControlImpl::sendGammaTable(uint64_t display, const float* entries) {
    if (composerExt == nullptr) return Result::FAILED;
    platform::dropAnswer(composerExt->setGlobalGammaLut(display, toComposer(entries)));
    return Result::OK;
}

// OK and zeros if the composer does not call back; FAILED and zeros without a composer and if the transport fails.
DisplayControlImpl::TableAnswer DisplayControlImpl::queryTable(uint64_t display, TableGetter getter) {
    if (composerExt == nullptr) return {Result::FAILED, {}};
    TableAnswer answer;
    const auto status = (composerExt.get()->*getter)(
        display, [&answer](composer_types::Result result, const composer_types::GammaLut& table) {
            answer.result = fromComposer(result);
            answer.table.entries = table.entries.data();
        });
    if (!status.isOk()) answer = {Result::FAILED, {}};
    return answer;
}

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
