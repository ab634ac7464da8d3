#include "calibration/ConfigXmlParser.h"

#include <libxml/parser.h>
#include <libxml/tree.h>
#include <platform/DeviceFiles.h>
#include <platform/Log.h>
#include <unistd.h>

#include <cstdlib>
#include <iterator>
#include <memory>
#include <string_view>

#include "calibration/PanelTable.h"

namespace vendor::kov::hardware::display_control::V1_0::implementation {

namespace {

struct XmlRelease {
    void operator()(xmlDoc* document) const { xmlFreeDoc(document); }
    void operator()(xmlChar* text) const { xmlFree(text); }
};
using XmlText = std::unique_ptr<xmlChar, XmlRelease>;

std::string_view nameOf(const xmlNode& node) {
    return node.name == nullptr ? "" : reinterpret_cast<const char*>(node.name);
}

// The whole text inside an element, converted by convert (a C function of the atof kind); 0 when it holds no number.
template <typename Convert>
auto valueOf(xmlNode& element, Convert convert) {
    const XmlText text(xmlNodeGetContent(&element));
    return convert(text == nullptr ? "" : reinterpret_cast<const char*>(text.get()));
}

double decimal(xmlNode& element) {
    return valueOf(element, [](const char* text) { return atof(text); });
}

// The low 32 bits of a hexadecimal number, with or without 0x.
int32_t hexadecimal(xmlNode& element) {
    return valueOf(element, [](const char* text) {
        return static_cast<int32_t>(static_cast<uint32_t>(strtol(text, nullptr, /*base=*/16)));
    });
}

// Hands the element children of a block to store(element, index), in the order of the document and count of them at
// most. Reports whether there were that many.
template <typename Store>
bool readElements(const xmlNode& block, size_t count, Store store) {
    size_t index = 0;
    for (xmlNode* child = block.children; child != nullptr && index < count; child = child->next) {
        if (child->type == XML_ELEMENT_NODE) store(*child, index++);
    }
    return index == count;
}

// A block that fills an array of floats by position.
template <auto Values, auto Complete>
void readFloats(ConfigXmlParser& record, const xmlNode& block) {
    auto& values = record.*Values;
    const bool complete = readElements(block, std::size(values), [&values](xmlNode& element, size_t index) {
        values[index] = static_cast<float>(decimal(element));
    });
    if (complete) record.*Complete = true;
}

void readUnlimitedCT(ConfigXmlParser& record, const xmlNode& block) {
    constexpr size_t kChildren = 2;
    const bool complete = readElements(block, kChildren, [&record](xmlNode& element, size_t) {
        if (nameOf(element) == "Warm") record.unlimitedWarm = hexadecimal(element);
        if (nameOf(element) == "Cold") record.unlimitedCold = hexadecimal(element);
    });
    if (complete) record.hasUnlimitedCT = true;
}

void readEyeCare(ConfigXmlParser& record, const xmlNode& block) {
    constexpr size_t kChildren = ConfigXmlParser::kEyeCareCoeffs + 2;
    size_t place = 0;
    const bool complete = readElements(block, kChildren, [&record, &place](xmlNode& element, size_t) {
        if (nameOf(element) == "MaxCCT") {
            record.eyeCareMaxCCT = decimal(element);
        } else if (nameOf(element) == "MinCCT") {
            record.eyeCareMinCCT = decimal(element);
        } else if (place < ConfigXmlParser::kEyeCareCoeffs) {
            record.eyeCareCoeffs[place++] = decimal(element);
        }
    });
    if (complete) record.hasEyeCare = true;
}

// One row per block that a calibration file may have.
struct Block {
    std::string_view name;
    void (*read)(ConfigXmlParser& record, const xmlNode& block);
};
constexpr Block kBlocks[] = {
    {"CTM_WPC", readFloats<&ConfigXmlParser::ctmWpc, &ConfigXmlParser::hasCtmWpc>},
    {"CTM_CCM", readFloats<&ConfigXmlParser::ctmCcm, &ConfigXmlParser::hasCtmCcm>},
    {"Gamma_Calib", readFloats<&ConfigXmlParser::gammaCalib, &ConfigXmlParser::hasGammaCalib>},
    {"Gamma_Tuning", readFloats<&ConfigXmlParser::gammaTuning, &ConfigXmlParser::hasGammaTuning>},
    {"UnlimitedCT", readUnlimitedCT},
    {"EyeCare", readEyeCare},
    {"WPCParam", readFloats<&ConfigXmlParser::wpcParam, &ConfigXmlParser::hasWpcParam>},
};

void readBlocks(ConfigXmlParser& record, const xmlNode& root) {
    for (const xmlNode* child = root.children; child != nullptr; child = child->next) {
        for (const Block& block : kBlocks) {
            if (nameOf(*child) == block.name) block.read(record, *child);
        }
    }
}

}  // namespace

void ConfigXmlParser::parser() {
    const PanelIdentity panel = identifyPanel();
    if (panel.name.status == platform::NodeStatus::OPEN_FAILED) LOG_ERROR("open panel name node error");
    if (panel.name.status == platform::NodeStatus::READ_FAILED) LOG_ERROR("read panel name error");
    LOG_DEBUG("panel xml %s", panel.calibFile.c_str());

    const std::string path = platform::devicePath(panel.calibFile);
    if (access(path.c_str(), F_OK) != 0) {
        LOG_ERROR("access error!");
        return;
    }

    xmlKeepBlanksDefault(0);
    std::unique_ptr<xmlDoc, XmlRelease> document(xmlParseFile(path.c_str()));
    if (document == nullptr) {
        LOG_ERROR("xmlParseFile error!");
        return;
    }
    if (const xmlNode* const root = xmlDocGetRootElement(document.get()); root != nullptr) {
        readBlocks(*this, *root);
    } else {
        LOG_ERROR("Empty document");
    }
    document.reset();
    xmlCleanupParser();
}

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
