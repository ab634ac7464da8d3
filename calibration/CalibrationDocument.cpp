// SPDX-License-Identifier: Apache-2.0
#include "calibration/CalibrationDocument.h"

#include <libxml/parser.h>
#include <sys/stat.h>

#include <string_view>

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
    if (!isAcceptedFile(path)) return {Refusal::NOT_A_FILE, nullptr};
    xmlKeepBlanksDefault(0);
    CalibrationDocument document{Refusal::NONE, {xmlParseFile(path.c_str()), {}}};
    if (document.xml == nullptr) return {Refusal::NOT_WELL_FORMED, nullptr};
    if (declaresEntities(*document.xml)) return {Refusal::DECLARES_ENTITIES, nullptr};
    return document;
}

void readBlocks(ConfigXmlParser& record, const xmlNode& root) {
    for (const xmlNode* child = root.children; child != nullptr; child = child->next) {
        if (child->type != XML_ELEMENT_NODE) continue;
        for (const CalibrationBlock& block : kCalibrationBlocks) {
            if (std::string_view(charsOf(child->name)) == block.name) readBlock(record, block, *child);
        }
    }
}

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
