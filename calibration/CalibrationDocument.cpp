// SPDX-License-Identifier: Apache-2.0
#include "calibration/CalibrationDocument.h"

#include <libxml/parser.h>
#include <sys/stat.h>

#include <algorithm>
#include <string_view>

// libxml2 marks xmlKeepBlanksDefault as deprecated from 2.12 on; earlier releases offer nothing else for a plain parse.
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"

namespace vendor::kov::hardware::display_control::V1_0::implementation {

namespace {

bool isAcceptedFile(const std::string& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) && status.st_size <= kLongestCalibrationFile;
}

bool declaresEntities(const xmlDoc& document) {
    const xmlDtd* const declarations = document.intSubset;
    const xmlNode* node = declarations == nullptr ? nullptr : declarations->children;
    while (node != nullptr && node->type != XML_ENTITY_DECL) node = node->next;
    return node != nullptr;
}

const char* charsOf(const xmlChar* text) {
    return reinterpret_cast<const char*>(text);
}

void readBlock(ConfigXmlParser& record, const CalibrationBlock& block, const xmlNode& node) {
    size_t count = 0;
    size_t place = 0;
    for (xmlNode* child = node.children; child != nullptr && count < block.elements; child = child->next) {
        if (child->type != XML_ELEMENT_NODE) continue;
        xmlChar* const text = xmlNodeGetContent(child);
        block.store(record, charsOf(child->name), charsOf(text), place);
        xmlFree(text);
        ++count;
    }
    if (count == block.elements) record.*block.isComplete = true;
}

}  // namespace

CalibrationDocument loadCalibration(const std::string& path) {
    if (!isAcceptedFile(path)) return {Refusal::NOT_ACCEPTED, nullptr};
    xmlKeepBlanksDefault(0);
    CalibrationDocument document{Refusal::NONE, {xmlParseFile(path.c_str()), {}}};
    if (document.xml == nullptr) return {Refusal::NOT_WELL_FORMED, nullptr};
    if (declaresEntities(*document.xml)) return {Refusal::DECLARES_ENTITIES, nullptr};
    return document;
}

void readBlocks(ConfigXmlParser& record, const xmlNode& root) {
    for (const xmlNode* child = root.children; child != nullptr; child = child->next) {
        if (child->type != XML_ELEMENT_NODE) continue;
        const std::string_view name = charsOf(child->name);
        const auto block = std::find_if(kCalibrationBlocks.begin(), kCalibrationBlocks.end(),
                                        [name](const CalibrationBlock& candidate) { return name == candidate.name; });
        if (block != kCalibrationBlocks.end()) readBlock(record, *block, *child);
    }
}

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
