// SPDX-License-Identifier: Apache-2.0
#include "tools/check/Summary.h"

#include <algorithm>
#include <cstdio>
#include <utility>

#include "color/ColorManager.h"
#include "tools/check/Document.h"
#include "tools/check/Rules.h"

namespace simulator {

namespace {

using vendor::kov::hardware::display_control::V1_0::implementation::ColorManager;
using vendor::kov::hardware::display_control::V1_0::implementation::TMat33;

using Content = std::vector<std::pair<std::string, Value>>;

std::string colorText(int32_t color) {
    char text[16];
    snprintf(text, sizeof text, "0x%06X", static_cast<uint32_t>(color));
    return text;
}

const char* sentTable(const ConfigXmlParser& record) {
    if (record.hasGammaTuning) return blockOf(&ConfigXmlParser::hasGammaTuning).name;
    return record.hasGammaCalib ? blockOf(&ConfigXmlParser::hasGammaCalib).name : nullptr;
}

Content matrixContent(const float* elements) {
    TMat33<float> matrix;
    std::copy_n(elements, ConfigXmlParser::kMatrix, matrix.data());
    return {{"matrix", matrixOf(elements)}, {"largest output", ColorManager::maxRgb(matrix)}};
}

Content tableContent(const float* table) {
    constexpr size_t kEntries = ConfigXmlParser::kTable;
    return {{"first", table[0]}, {"middle", table[kEntries / 2]}, {"last", table[kEntries - 1]}};
}

Content eyeCareContent(const ConfigXmlParser& record) {
    const auto& coefficients = record.eyeCareCoeffs;
    const bool fitted = std::any_of(std::begin(coefficients), std::end(coefficients), [](double c) { return c != 0; });
    return {{"maximum kelvin", static_cast<float>(record.eyeCareMaxCCT)},
            {"minimum kelvin", static_cast<float>(record.eyeCareMinCCT)},
            {"coefficients", std::string(fitted ? "given" : "all 0")}};
}

Content contentOf(const ConfigXmlParser& record, const CalibrationBlock& form) {
    if (form.isComplete == &ConfigXmlParser::hasUnlimitedCT)
        return {{"warm", colorText(record.unlimitedWarm)}, {"cold", colorText(record.unlimitedCold)}};
    if (form.isComplete == &ConfigXmlParser::hasEyeCare) return eyeCareContent(record);
    const float* const values = floatsOf(form, record);
    if (form.elements == ConfigXmlParser::kTable) return tableContent(values);
    if (form.isComplete == &ConfigXmlParser::hasWpcParam) return {{"parameters", matrixOf(values)}};
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
std::string partText(const std::string& name, const Value& value) {
    if (const auto* const text = std::get_if<std::string>(&value)) return name + " " + *text;
    if (const auto* const number = std::get_if<float>(&value)) return name + " " + numberText(*number);
    std::string text = name;
    for (const float element : std::get<Matrix>(value)) text += " " + numberText(element);
    return text;
}

}  // namespace

Summary summaryOf(const CheckedCalibration& checked) {
    const ConfigXmlParser& record = *checked.record;
    Summary summary;
    if (const char* const sent = sentTable(record)) summary.gammaTableSent = sent;
    for (const BlockCount& count : checked.blocks) {
        const CalibrationBlock& form = *count.block;
        const bool complete = record.*form.isComplete;
        summary.blocks.push_back(
            {count, complete, useOf(record, form), complete ? contentOf(record, form) : Content()});
    }
    return summary;
}

std::string textOf(const Summary& summary) {
    const auto& blocks = summary.blocks;
    const bool nothing = std::all_of(blocks.begin(), blocks.end(), [](const auto& b) { return b.count.line == 0; });
    if (nothing) return "  no block of it is read: the display is as without a calibration\n";
    std::string text;
    for (const BlockSummary& block : blocks) {
        char head[96];
        snprintf(head, sizeof head, "  %-13s", block.count.block->name);
        text += head;
        if (block.count.line == 0) {
            text += "not in the file: ";
        } else if (!block.complete) {
            text += "not complete, " + std::to_string(block.count.values) + " of " +
                    std::to_string(block.count.block->elements) + " values: ";
        }
        text += block.use;
        const char* separator = ": ";
        for (const auto& [name, value] : block.content) text += std::exchange(separator, ", ") + partText(name, value);
        text += "\n";
    }
    return text;
}

}  // namespace simulator
