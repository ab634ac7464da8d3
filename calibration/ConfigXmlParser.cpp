#include "calibration/ConfigXmlParser.h"

#include <libxml/parser.h>
#include <libxml/tree.h>
#include <libxml/xmlerror.h>
#include <platform/DeviceFiles.h>
#include <platform/Log.h>
#include <platform/OutOfMemory.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "calibration/Decimal.h"
#include "calibration/DocumentBounds.h"
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

// The bytes of a regular file, one more than kLongestFile at most; none when it cannot be read as a whole.
std::string bytesOf(const std::string& path) {
    struct stat status {};
    if (stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return {};
    constexpr off_t kMost = kLongestFile + 1;
    std::string bytes(static_cast<size_t>(std::min(status.st_size, kMost)), '\0');
    std::ifstream file(path, std::ios::binary);
    file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    return file.good() ? bytes : std::string();
}

bool isReadableFile(const std::string& path) {
    return platform::unlessOutOfMemory(false, [&path] { return refusalOf(bytesOf(path)) == Refusal::NONE; });
}

// Sees whether libxml2 finds no memory while this lives: it may return what it has of a document even so. Messages go
// on to where they went before.
class MemoryWatch {
public:
    MemoryWatch() : handler(xmlStructuredError), context(xmlStructuredErrorContext) {
        xmlSetStructuredErrorFunc(this, note);
    }
    ~MemoryWatch() { xmlSetStructuredErrorFunc(context, handler); }
    MemoryWatch(const MemoryWatch&) = delete;
    MemoryWatch& operator=(const MemoryWatch&) = delete;

    bool ranOut() const { return outOfMemory; }

private:
    static void note(void* watch, xmlError* error) {
        MemoryWatch& self = *static_cast<MemoryWatch*>(watch);
        if (error->code == XML_ERR_NO_MEMORY) self.outOfMemory = true;
        if (self.handler != nullptr) {
            self.handler(self.context, error);
        } else {
            const auto known = [](const char* text) { return text == nullptr ? "" : text; };
            xmlGenericError(xmlGenericErrorContext, "%s:%d: %s", known(error->file), error->line,
                            known(error->message));
        }
    }

    const xmlStructuredErrorFunc handler;
    void* const context;
    bool outOfMemory = false;
};

// A calibration document being read into a record.
class Reading {
public:
    explicit Reading(ConfigXmlParser& target) : record(target) {}

    double decimal(xmlNode& element) { return toDecimal(textOf(element).chars); }

    // The low 32 bits of a hexadecimal number, with or without 0x.
    int32_t hexadecimal(xmlNode& element) {
        return static_cast<int32_t>(static_cast<uint32_t>(strtol(textOf(element).chars, nullptr, /*base=*/16)));
    }

    ConfigXmlParser& record;

private:
    struct Text {
        XmlText copy;  // null where none was needed
        const char* chars;
    };

    // The whole text inside an element; "" when entities would make more of it than is left for the document. A text
    // that stands alone, as nearly all do, is taken where it is.
    Text textOf(xmlNode& element) {
        if (const xmlChar* const text = loneTextOf(element); text != nullptr) return {nullptr, charsOf(text)};
        XmlText copy(mayExpand(element) ? xmlNodeGetContent(&element) : nullptr);
        const char* const chars = copy == nullptr ? "" : charsOf(copy.get());
        return {std::move(copy), chars};
    }

    // Null unless the element holds one piece of text and nothing else.
    static const xmlChar* loneTextOf(const xmlNode& element) {
        const xmlNode* const child = element.children;
        const bool isLone = child != nullptr && child->next == nullptr && child->type == XML_TEXT_NODE;
        return isLone ? child->content : nullptr;
    }

    static const char* charsOf(const xmlChar* text) { return reinterpret_cast<const char*>(text); }

    // Takes what an element's entities stand for off the text that is left for entities; false when it is too much.
    bool mayExpand(const xmlNode& node) {
        for (const xmlNode* child = node.children; child != nullptr; child = child->next) {
            if (child->type != XML_ENTITY_REF_NODE) {
                if (!mayExpand(*child)) return false;
                continue;
            }
            const xmlEntity* const entity = xmlGetDocEntity(child->doc, child->name);
            const size_t length = entity == nullptr ? 0 : 1 + static_cast<size_t>(entity->length);
            if (length > entityText) return false;
            entityText -= length;
            if (entity != nullptr && !mayExpand(*reinterpret_cast<const xmlNode*>(entity))) return false;
        }
        return true;
    }

    size_t entityText = 1 << 20;  // bytes that entities of the document may still make
};

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
void readFloats(Reading& reading, const xmlNode& block) {
    auto& values = reading.record.*Values;
    const bool complete = readElements(block, std::size(values), [&](xmlNode& element, size_t index) {
        values[index] = static_cast<float>(reading.decimal(element));
    });
    if (complete) reading.record.*Complete = true;
}

void readUnlimitedCT(Reading& reading, const xmlNode& block) {
    constexpr size_t kChildren = 2;
    ConfigXmlParser& record = reading.record;
    const bool complete = readElements(block, kChildren, [&](xmlNode& element, size_t) {
        if (nameOf(element) == "Warm") record.unlimitedWarm = reading.hexadecimal(element);
        if (nameOf(element) == "Cold") record.unlimitedCold = reading.hexadecimal(element);
    });
    if (complete) record.hasUnlimitedCT = true;
}

void readEyeCare(Reading& reading, const xmlNode& block) {
    constexpr size_t kChildren = ConfigXmlParser::kEyeCareCoeffs + 2;
    ConfigXmlParser& record = reading.record;
    size_t place = 0;
    const bool complete = readElements(block, kChildren, [&](xmlNode& element, size_t) {
        if (nameOf(element) == "MaxCCT") {
            record.eyeCareMaxCCT = reading.decimal(element);
        } else if (nameOf(element) == "MinCCT") {
            record.eyeCareMinCCT = reading.decimal(element);
        } else if (place < ConfigXmlParser::kEyeCareCoeffs) {
            record.eyeCareCoeffs[place++] = reading.decimal(element);
        }
    });
    if (complete) record.hasEyeCare = true;
}

// One row per block that a calibration file may have.
struct Block {
    std::string_view name;
    void (*read)(Reading& reading, const xmlNode& block);
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
    Reading reading(record);
    for (const xmlNode* child = root.children; child != nullptr; child = child->next) {
        for (const Block& block : kBlocks) {
            if (nameOf(*child) == block.name) block.read(reading, *child);
        }
    }
}

enum class Outcome { READ, NOT_PARSED, NO_ROOT, NO_MEMORY };

// Reads what there is of a file; after NO_MEMORY the record is not to be used.
Outcome readFile(ConfigXmlParser& record, const std::string& path) {
    const MemoryWatch memory;
    const std::unique_ptr<xmlDoc, XmlRelease> document(isReadableFile(path) ? xmlParseFile(path.c_str()) : nullptr);
    if (document == nullptr) return Outcome::NOT_PARSED;
    const xmlNode* const root = xmlDocGetRootElement(document.get());
    if (root != nullptr) readBlocks(record, *root);
    if (memory.ranOut()) return Outcome::NO_MEMORY;
    if (root == nullptr) return Outcome::NO_ROOT;
    return Outcome::READ;
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
    switch (readFile(*this, path)) {
        case Outcome::READ:
            break;
        case Outcome::NOT_PARSED:
            LOG_ERROR("xmlParseFile error!");
            return;
        case Outcome::NO_ROOT:
            LOG_ERROR("Empty document");
            break;
        case Outcome::NO_MEMORY:
            LOG_ERROR("no memory for the calibration");
            *this = {};
            break;
    }
    xmlCleanupParser();
}

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
