// Start and stop of the service, and the panels that this phone is fitted with.
#include "service/DisplayControlImpl.h"

#include <platform/Answer.h>
#include <platform/Log.h>
#include <platform/OutOfMemory.h>

#include <algorithm>
#include <array>
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
    const std::array<int32_t, ColorManager::kEndPoints> endPoints{record.unlimitedWarm, record.unlimitedCold};
    std::array<double, ColorManager::kEyeCareRun> eyeCare{record.eyeCareMaxCCT, record.eyeCareMinCCT};
    std::copy(std::begin(record.eyeCareCoeffs), std::end(record.eyeCareCoeffs), eyeCare.begin() + 2);
    const int32_t* const ends = record.hasUnlimitedCT ? endPoints.data() : nullptr;
    const bool done = platform::unlessOutOfMemory(
        false, [&] { return ColorManager::init(ends, record.hasEyeCare ? eyeCare.data() : nullptr) == 0; });
    if (!done) ColorManager::init(ends, nullptr);  // no memory for the eye care's
}

}  // namespace

int DisplayControlImpl::init() {
    composerExt = IComposerExt::getService("default", /*getStub=*/false);
    if (composerExt == nullptr) {
        LOG_ERROR("get composer ext service error!");
        return -1;
    }

    const int32_t count = askNumOfDisplay();
    numOfDisplay = count >= 0 && reserveDisplays(count) ? count : -1;
    if (numOfDisplay < 0) {
        LOG_ERROR("getNumOfDisplay error!");
        return -2;
    }

    askDisplayInfos();
    colorManagers.resize(static_cast<size_t>(numOfDisplay));
    applyCalibration();
    LOG_INFO("OK");
    return 0;
}

void DisplayControlImpl::deInit() {
    composerExt.clear();
}

// The composer's count, or a negative number when it refuses, does not answer or names more than an int32_t holds.
int32_t DisplayControlImpl::askNumOfDisplay() {
    return platform::unlessOutOfMemory(-1, [this] {
        const auto answer = std::make_shared<platform::Answer<int32_t>>(-1);
        const auto status = composerExt->getNumOfDisplay([answer](composer_types::Result result, uint32_t count) {
            if (result == composer_types::Result::OK) answer->deliver(static_cast<int32_t>(count));
        });
        return status.isOk() ? answer->take() : -1;
    });
}

// Makes room for the lists, which stay as they are; false when there is none.
bool DisplayControlImpl::reserveDisplays(int32_t count) {
    return platform::unlessOutOfMemory(false, [this, size = static_cast<size_t>(count)] {
        displayInfos.reserve(size);
        colorManagers.reserve(size);
        return true;
    });
}

void DisplayControlImpl::askDisplayInfos() {
    if (numOfDisplay == 0) return;  // the list keeps what it held
    displayInfos.resize(static_cast<size_t>(numOfDisplay));
    for (int32_t i = 0; i < numOfDisplay; ++i) displayInfos[static_cast<size_t>(i)] = askDisplayInfo(i);
}

// Three zeros and no name when the composer does not answer.
DisplayInfo DisplayControlImpl::askDisplayInfo(int32_t display) {
    return platform::unlessOutOfMemory(DisplayInfo{}, [this, display] {
        const auto answer = std::make_shared<platform::Answer<DisplayInfo>>();
        const auto status = composerExt->getDisplayInfo(
            static_cast<uint64_t>(display),
            [answer, display](composer_types::Result result, const composer_types::DisplayInfo& info) {
                if (result != composer_types::Result::OK) LOG_ERROR("getDisplayInfo %d error!", display);
                answer->deliver(platform::unlessOutOfMemory(DisplayInfo{}, [&info] { return fromComposer(info); }));
            });
        return status.isOk() ? answer->take() : DisplayInfo{};
    });
}

// The calibration reaches display 0, the closed colour libraries and the composer's gamma table; no colour transform is
// sent before an operation asks for one.
void DisplayControlImpl::applyCalibration() {
    const auto record = readCalibration();
    if (numOfDisplay < 1) return;
    if (record == nullptr) {
        hasWpcParam = false;
        ColorManager::init(nullptr, nullptr);
        return;
    }

    ColorManager& colors = colorManagers[0];
    if (record->hasCtmWpc) copyMatrix(record->ctmWpc, colors.calibWpcCtm);
    if (record->hasCtmCcm) copyMatrix(record->ctmCcm, colors.calibCcmCtm);
    hasWpcParam = record->hasWpcParam;
    std::copy_n(record->wpcParam, std::size(wpcParam), wpcParam);
    configureColorLibraries(*record);

    sendCalibratedGamma(*record);
}

std::unique_ptr<ConfigXmlParser> DisplayControlImpl::readCalibration() {
    auto record = platform::unlessOutOfMemory(std::unique_ptr<ConfigXmlParser>(), [] {
        auto made = std::make_unique<ConfigXmlParser>();
        made->parser();
        return made;
    });
    if (record == nullptr) LOG_ERROR("no memory for the calibration");
    return record;
}

bool DisplayControlImpl::knowsDisplay(uint64_t display) const {
    return numOfDisplay > 0 && display < static_cast<uint64_t>(numOfDisplay);
}

ColorManager* DisplayControlImpl::servedColors(uint64_t display) {
    return composerExt != nullptr && knowsDisplay(display) ? &colorManagers[display] : nullptr;
}

void DisplayControlImpl::sendFinalCtm(uint64_t display) {
    platform::dropAnswer(composerExt->setColorTransformMatrix(display, toComposer(firstCtm),
                                                              toComposer(colorManagers[display].finalCtm())));
}

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
