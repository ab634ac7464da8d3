// SPDX-License-Identifier: Apache-2.0
#include "calibration/ConfigXmlParser.h"

#include <libxml/parser.h>
#include <platform/DeviceFiles.h>
#include <platform/Log.h>
#include <unistd.h>

#include <cstdlib>
#include <string>
#include <string_view>

#include "calibration/CalibrationDocument.h"
#include "calibration/PanelTable.h"

namespace vendor::kov::hardware::display_control::V1_0::implementation {

namespace {

// The low 32 bits of a hexadecimal number, with or without 0x.
int32_t toColor(const char* text) {
    return static_cast<int32_t>(static_cast<uint32_t>(strtol(text, nullptr, /*base=*/16)));
}

template <auto Values>
void storeFloat(ConfigXmlParser& record, const char* /*elementName*/, const char* text, size_t& place) {
    (record.*Values)[place++] = static_cast<float>(atof(text));
}

void storeEndPoint(ConfigXmlParser& record, const char* elementName, const char* text, size_t& /*place*/) {
    const std::string_view name = elementName;
    if (name == "Warm") record.unlimitedWarm = toColor(text);
    if (name == "Cold") record.unlimitedCold = toColor(text);
}

void storeEyeCare(ConfigXmlParser& record, const char* elementName, const char* text, size_t& place) {
    const std::string_view name = elementName;
    if (name == "MaxCCT") {
        record.eyeCareMaxCCT = atof(text);
    } else if (name == "MinCCT") {
        record.eyeCareMinCCT = atof(text);
    } else if (place < ConfigXmlParser::kEyeCareCoeffs) {
        record.eyeCareCoeffs[place++] = atof(text);
    }
}

}  // namespace

using Record = ConfigXmlParser;
const std::array<CalibrationBlock, 7> kCalibrationBlocks = {{
    {"CTM_WPC", Record::kMatrix, &Record::hasCtmWpc, storeFloat<&Record::ctmWpc>},
    {"CTM_CCM", Record::kMatrix, &Record::hasCtmCcm, storeFloat<&Record::ctmCcm>},
    {"Gamma_Calib", Record::kTable, &Record::hasGammaCalib, storeFloat<&Record::gammaCalib>},
    {"Gamma_Tuning", Record::kTable, &Record::hasGammaTuning, storeFloat<&Record::gammaTuning>},
    {"UnlimitedCT", 2, &Record::hasUnlimitedCT, storeEndPoint},
    {"EyeCare", Record::kEyeCareCoeffs + 2, &Record::hasEyeCare, storeEyeCare},
    {"WPCParam", Record::kWpcParams, &Record::hasWpcParam, storeFloat<&Record::wpcParam>},
}};

void ConfigXmlParser::parser() {
    const PanelIdentity panel = identifyPanel();
    if (panel.name.status == platform::NodeStatus::OPEN_FAILED) PLATFORM_LOG_ERROR("open panel name node error");
    if (panel.name.status == platform::NodeStatus::READ_FAILED) PLATFORM_LOG_ERROR("read panel name error");
    PLATFORM_LOG_DEBUG("panel xml %s", panel.calibFile.c_str());

    const std::string path = platform::devicePath(panel.calibFile);
    if (access(path.c_str(), F_OK) != 0) {
        PLATFORM_LOG_ERROR("access error!");
        return;
    }

    CalibrationDocument document = loadCalibration(path);
    if (document.refusal != Refusal::NONE) {
        PLATFORM_LOG_ERROR("xmlParseFile error!");
        return;
    }
    if (const xmlNode* const root = xmlDocGetRootElement(document.xml.get()); root != nullptr) {
        readBlocks(*this, *root);
    } else {
        PLATFORM_LOG_ERROR("Empty document");
    }
    document.xml.reset();
    xmlCleanupParser();
}

std::unique_ptr<ConfigXmlParser> readCalibration() {
    auto record = std::make_unique<ConfigXmlParser>();
    record->parser();
    return record;
}

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
