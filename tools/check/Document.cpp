// SPDX-License-Identifier: Apache-2.0
#include "tools/check/Document.h"

#include <libxml/parser.h>
#include <libxml/tree.h>

#include <algorithm>
#include <fstream>
#include <utility>

#include "tools/text/Text.h"

namespace simulator {

using vendor::kov::hardware::display_control::V1_0::implementation::loadCalibration;
using vendor::kov::hardware::display_control::V1_0::implementation::readBlocks;

namespace {

std::string textOf(const xmlChar* text) {
    return text == nullptr ? "" : reinterpret_cast<const char*>(text);
}

bool isElement(const xmlNode& node) {
    return node.type == XML_ELEMENT_NODE;
}

// Text that the reader of a block passes over.
bool isStrayText(const xmlNode& node) {
    if (node.type == XML_ENTITY_REF_NODE) return true;
    if (node.type != XML_TEXT_NODE && node.type != XML_CDATA_SECTION_NODE) return false;
    return node.content != nullptr && !trimmed(textOf(node.content)).empty();
}

std::optional<std::string> plainText(const xmlNode& element) {
    for (const xmlNode* child = element.children; child != nullptr; child = child->next) {
        if (child->type == XML_ENTITY_REF_NODE || isElement(*child)) return std::nullopt;
    }
    xmlChar* const content = xmlNodeGetContent(&element);
    std::string text = textOf(content);
    xmlFree(content);
    return text;
}

Block readBlock(const CalibrationBlock& form, const xmlNode& element) {
    Block block{&form, xmlGetLineNo(&element), 0, {}, 0};
    for (const xmlNode* child = element.children; child != nullptr; child = child->next) {
        if (block.strayText == 0 && isStrayText(*child)) block.strayText = xmlGetLineNo(child);
        if (!isElement(*child)) continue;
        if (block.count++ > form.elements) continue;
        block.values.push_back({xmlGetLineNo(child), textOf(child->name), plainText(*child)});
    }
    return block;
}

void readElement(Document& document, const xmlNode& element) {
    const std::string name = textOf(element.name);
    const auto form = std::find_if(kCalibrationBlocks.begin(), kCalibrationBlocks.end(),
                                   [&](const CalibrationBlock& candidate) { return candidate.name == name; });
    if (form == kCalibrationBlocks.end()) {
        document.unknown.push_back({name, xmlGetLineNo(&element)});
    } else {
        document.blocks.push_back(readBlock(*form, element));
    }
}

// By the first bytes of gzip and xz: libxml2 does not report reliably that it has unpacked a file.
bool isCompressed(const std::filesystem::path& file) {
    std::array<char, 2> begin{};
    std::ifstream(file, std::ios::binary).read(begin.data(), begin.size());
    const std::string_view bytes(begin.data(), begin.size());
    return bytes == "\x1F\x8B" || bytes == "\xFD\x37";
}

bool isCommon(const std::string& encoding) {
    constexpr std::array<xmlCharEncoding, 5> kCommon = {XML_CHAR_ENCODING_UTF8, XML_CHAR_ENCODING_UTF16LE,
                                                        XML_CHAR_ENCODING_UTF16BE, XML_CHAR_ENCODING_8859_1,
                                                        XML_CHAR_ENCODING_ASCII};
    const xmlCharEncoding parsed = xmlParseCharEncoding(encoding.c_str());
    return encoding.empty() || std::find(kCommon.begin(), kCommon.end(), parsed) != kCommon.end();
}

}  // namespace

const CalibrationBlock& blockOf(BlockFlag flag) {
    return *std::find_if(kCalibrationBlocks.begin(), kCalibrationBlocks.end(),
                         [flag](const CalibrationBlock& block) { return block.isComplete == flag; });
}

std::array<std::string_view, 2> valueNamesOf(const CalibrationBlock& block) {
    if (block.isComplete == &ConfigXmlParser::hasUnlimitedCT) return {"Warm", "Cold"};
    if (block.isComplete == &ConfigXmlParser::hasEyeCare) return {"MaxCCT", "MinCCT"};
    return {};
}

const float* floatsOf(const CalibrationBlock& block, const ConfigXmlParser& record) {
    const std::pair<BlockFlag, const float*> kFloats[] = {
        {&ConfigXmlParser::hasCtmWpc, record.ctmWpc},         {&ConfigXmlParser::hasCtmCcm, record.ctmCcm},
        {&ConfigXmlParser::hasGammaCalib, record.gammaCalib}, {&ConfigXmlParser::hasGammaTuning, record.gammaTuning},
        {&ConfigXmlParser::hasWpcParam, record.wpcParam},
    };
    for (const auto& [flag, floats] : kFloats) {
        if (flag == block.isComplete) return floats;
    }
    return nullptr;
}

const Block* Document::lastOf(const CalibrationBlock& form) const {
    const auto block = std::find_if(blocks.rbegin(), blocks.rend(), [&](const Block& b) { return b.form == &form; });
    return block == blocks.rend() ? nullptr : &*block;
}

long Document::lineOf(const CalibrationBlock& form, size_t index) const {
    const auto block = std::find_if(blocks.rbegin(), blocks.rend(),
                                    [&](const Block& b) { return b.form == &form && index < b.values.size(); });
    return block == blocks.rend() ? 0 : block->values[index].line;
}

Document readDocument(const std::filesystem::path& file, ConfigXmlParser& record) {
    Document result;
    const XmlMessageHandler handler([&result](const XmlMessage& message) {
        if (message.isError) result.messages.push_back(message);
    });
    auto loaded = loadCalibration(absolute(file).string());
    result.refusal = loaded.refusal;
    if (loaded.xml != nullptr) {
        result.encoding = textOf(loaded.xml->encoding);
        result.hasCommonEncoding = isCommon(result.encoding);
        result.isCompressed = isCompressed(file);
        const xmlNode* const root = xmlDocGetRootElement(loaded.xml.get());
        readBlocks(record, *root);
        for (const xmlNode* child = root->children; child != nullptr; child = child->next) {
            if (isElement(*child)) readElement(result, *child);
        }
    }
    loaded.xml.reset();
    xmlCleanupParser();
    return result;
}

}  // namespace simulator
