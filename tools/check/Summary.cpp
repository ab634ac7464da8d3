// SPDX-License-Identifier: Apache-2.0
#include "tools/check/Summary.h"

#include <algorithm>
#include <cstdio>
#include <sstream>

#include "color/ColorManager.h"
#include "tools/check/Document.h"
#include "tools/check/Rules.h"

namespace simulator {

namespace {

using vendor::kov::hardware::display_control::V1_0::implementation::ColorManager;
using vendor::kov::hardware::display_control::V1_0::implementation::TMat33;

std::string colorText(int32_t color) {
    char text[16];
    snprintf(text, sizeof text, "0x%06X", static_cast<uint32_t>(color));
    return text;
}

const char* sentTable(const ConfigXmlParser& record) {
    if (record.hasGammaTuning) return blockOf(&ConfigXmlParser::hasGammaTuning).name;
    return record.hasGammaCalib ? blockOf(&ConfigXmlParser::hasGammaCalib).name : nullptr;
}

Json matrixContent(const float* elements) {
    TMat33<float> matrix;
    std::copy_n(elements, ConfigXmlParser::kMatrix, matrix.data());
    return {{"matrix", matrixToJson(elements)}, {"largest output", toJson(ColorManager::maxRgb(matrix))}};
}

Json tableContent(const float* table) {
    constexpr size_t kEntries = ConfigXmlParser::kTable;
    return {
        {"first", toJson(table[0])}, {"middle", toJson(table[kEntries / 2])}, {"last", toJson(table[kEntries - 1])}};
}

Json eyeCareContent(const ConfigXmlParser& record) {
    const auto& coefficients = record.eyeCareCoeffs;
    const bool fitted = std::any_of(std::begin(coefficients), std::end(coefficients), [](double c) { return c != 0; });
    return {{"maximum kelvin", toJson(static_cast<float>(record.eyeCareMaxCCT))},
            {"minimum kelvin", toJson(static_cast<float>(record.eyeCareMinCCT))},
            {"coefficients", fitted ? "given" : "all 0"}};
}

Json contentOf(const ConfigXmlParser& record, const CalibrationBlock& form) {
    if (form.isComplete == &ConfigXmlParser::hasUnlimitedCT)
        return {{"warm", colorText(record.unlimitedWarm)}, {"cold", colorText(record.unlimitedCold)}};
    if (form.isComplete == &ConfigXmlParser::hasEyeCare) return eyeCareContent(record);
    const float* const values = floatsOf(form, record);
    if (form.elements == ConfigXmlParser::kTable) return tableContent(values);
    if (form.isComplete == &ConfigXmlParser::hasWpcParam) return {{"parameters", matrixToJson(values)}};
    return matrixContent(values);
}

// What the service does with a block, or does without it.
std::string useOf(const ConfigXmlParser& record, const CalibrationBlock& form) {
    const bool complete = record.*form.isComplete;
    if (form.elements == ConfigXmlParser::kTable) {
        const char* const sent = sentTable(record);
        if (sent == nullptr) return "no table is sent";
        return form.name == std::string_view(sent) ? "sent to the composer" : std::string(sent) + " is sent instead";
    }
    if (complete) return "used";
    if (form.isComplete == &ConfigXmlParser::hasUnlimitedCT)
        return "default " + colorText(ColorManager::kDefaultWarm) + " to " + colorText(ColorManager::kDefaultCold);
    if (form.isComplete == &ConfigXmlParser::hasEyeCare) return "eye care is not configured";
    return form.isComplete == &ConfigXmlParser::hasWpcParam ? "default parameters" : "identity";
}

// A part of a block's content: "matrix 1 0 0 0 1 0 0 0 1".
std::string partText(const std::string& name, const Json& value) {
    const auto scalar = [](const Json& v) {
        return v.is_string() ? v.get<std::string>() : numberText(static_cast<double>(v.get<float>()));
    };
    std::string text = name;
    if (!value.is_array()) return text + " " + scalar(value);
    for (const Json& element : value) text += " " + scalar(element);
    return text;
}

}  // namespace

Json summaryOf(const CheckedCalibration& checked) {
    const ConfigXmlParser& record = *checked.record;
    Json blocks = Json::array();
    for (const BlockCount& count : checked.blocks) {
        const CalibrationBlock& form = *count.block;
        const bool complete = record.*form.isComplete;
        blocks.push_back({{"name", std::string(form.name)},
                          {"line", count.line},
                          {"values", count.values},
                          {"needed", form.elements},
                          {"complete", complete},
                          {"use", useOf(record, form)},
                          {"content", complete ? contentOf(record, form) : Json()}});
    }
    const char* const sent = sentTable(record);
    return {{"gammaTableSent", sent == nullptr ? Json() : Json(sent)}, {"blocks", blocks}};
}

Json toJson(const Finding& finding) {
    Json json = {{"severity", finding.severity == Finding::Severity::ERROR ? "error" : "warning"},
                 {"line", finding.line},
                 {"block", finding.block},
                 {"value", finding.value ? Json(*finding.value) : Json()},
                 {"rule", finding.rule},
                 {"what", finding.what},
                 {"expected", finding.expected}};
    if (finding.more > 0) json["more"] = finding.more;
    return json;
}

std::string textOf(const Json& summary) {
    const Json& blocks = summary["blocks"];
    const bool nothing = std::all_of(blocks.begin(), blocks.end(), [](const Json& b) { return b["line"] == 0; });
    if (nothing) return "  no block of it is read: the display is as without a calibration\n";
    std::ostringstream text;
    for (const Json& block : blocks) {
        char head[96];
        snprintf(head, sizeof head, "  %-13s", block["name"].get<std::string>().c_str());
        text << head;
        if (block["line"] == 0) {
            text << "not in the file: ";
        } else if (!block["complete"].get<bool>()) {
            text << "not complete, " << block["values"] << " of " << block["needed"] << " values: ";
        }
        text << block["use"].get<std::string>();
        const char* separator = ": ";
        for (const auto& [name, value] : block["content"].items()) {
            text << separator << partText(name, value);
            separator = ", ";
        }
        text << "\n";
    }
    return text.str();
}

}  // namespace simulator
