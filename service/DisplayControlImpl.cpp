// SPDX-License-Identifier: Apache-2.0
// Start and stop of the service, and the panels of this phone.
#include "service/DisplayControlImpl.h"

#include <platform/Answer.h>
#include <platform/Log.h>

#include <algorithm>
#include <array>
#include <cinttypes>
#include <iterator>

#include "calibration/ConfigXmlParser.h"
#include "calibration/PanelTable.h"
#include "service/Composer.h"

namespace vendor::kov::hardware::display_control::V1_0::implementation {

const std::map<std::string, std::string> panelCalibFiles = {
    {"dornel R7TK 35 02 0a hd+ video dsi panel\n", "/vendor/etc/disp_calib_data_0a.xml"},
    {"dornel R7TK 43 03 0b hd+ video dsi panel\n", "/vendor/etc/disp_calib_data_0b.xml"},
};

namespace {

void configureColorLibraries(const ConfigXmlParser& record) {
    const int32_t endPoints[] = {record.unlimitedWarm, record.unlimitedCold};
    std::array<double, ColorManager::kEyeCareRun> eyeCare{record.eyeCareMaxCCT, record.eyeCareMinCCT};
    std::copy(std::begin(record.eyeCareCoeffs), std::end(record.eyeCareCoeffs), eyeCare.begin() + 2);
    ColorManager::init(record.hasUnlimitedCT ? endPoints : nullptr, record.hasEyeCare ? eyeCare.data() : nullptr);
}

}  // namespace

int DisplayControlImpl::init() {
    composerExt = IComposerExt::getService("default", /*getStub=*/false);
    if (composerExt == nullptr) {
        PLATFORM_LOG_ERROR("get composer ext service error!");
        return -1;
    }

    numOfDisplay = queryNumOfDisplay();
    if (numOfDisplay < 0) {
        PLATFORM_LOG_ERROR("getNumOfDisplay error!");
        return -2;
    }

    const auto count = static_cast<size_t>(numOfDisplay);
    if (count > 0) displayInfos.resize(count);  // without displays the list stays as it was
    for (size_t i = 0; i < count; ++i) displayInfos[i] = queryDisplayInfo(i);
    colorManagers.resize(count);
    applyCalibration();
    PLATFORM_LOG_INFO("OK");
    return 0;
}

void DisplayControlImpl::deInit() {
    composerExt.clear();
}

// The composer's display count; -1 if the call fails or the count exceeds kMaxDisplays.
int32_t DisplayControlImpl::queryNumOfDisplay() {
    int32_t count = -1;
    const auto status = composerExt->getNumOfDisplay([&count](composer_types::Result result, uint32_t reported) {
        if (result == composer_types::Result::OK && reported <= kMaxDisplays) count = static_cast<int32_t>(reported);
    });
    return status.isOk() ? count : -1;
}

// Zeros and an empty name if the composer does not answer.
DisplayInfo DisplayControlImpl::queryDisplayInfo(uint64_t display) {
    DisplayInfo answer{};
    const auto status = composerExt->getDisplayInfo(
        display, [&answer, display](composer_types::Result result, const composer_types::DisplayInfo& info) {
            if (result != composer_types::Result::OK) PLATFORM_LOG_ERROR("getDisplayInfo %" PRIu64 " error!", display);
            answer = fromComposer(info);
        });
    return status.isOk() ? answer : DisplayInfo{};
}

// Applies the calibration to display 0, the closed colour libraries and the composer's gamma table. Sends no colour
// transform: the first operation that changes one does.
void DisplayControlImpl::applyCalibration() {
    const auto record = readCalibration();
    if (numOfDisplay < 1) return;
    ColorManager& colors = colorManagers[0];
    if (record->hasCtmWpc) copyMatrix(record->ctmWpc, colors.calibWpcCtm);
    if (record->hasCtmCcm) copyMatrix(record->ctmCcm, colors.calibCcmCtm);
    hasWpcParam = record->hasWpcParam;
    std::copy(std::begin(record->wpcParam), std::end(record->wpcParam), std::begin(wpcParam));
    configureColorLibraries(*record);
    sendCalibratedGamma(*record);
}

bool DisplayControlImpl::knowsDisplay(uint64_t display) const {
    return numOfDisplay > 0 && display < static_cast<uint64_t>(numOfDisplay);
}

ColorManager* DisplayControlImpl::servedColors(uint64_t display) {
    return composerExt != nullptr && knowsDisplay(display) ? &colorManagers[display] : nullptr;
}

void DisplayControlImpl::sendFinalCtm(uint64_t display, const ColorManager& colors) {
    platform::dropAnswer(
        composerExt->setColorTransformMatrix(display, toComposer(firstCtm), toComposer(colors.finalCtm())));
}

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
