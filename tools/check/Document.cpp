#include "tools/check/Document.h"

#include <android/log.h>
#include <libxml/parser.h>
#include <libxml/tree.h>
#include <libxml/xmlerror.h>

#include <algorithm>
#include <new>

#include "simulator/PhoneFiles.h"

namespace simulator {

const std::array<BlockForm, 7> kBlockForms = {{
    {"CTM_WPC", ConfigXmlParser::kMatrix, {}, &ConfigXmlParser::hasCtmWpc, [](auto& r) { return &r.ctmWpc[0]; }},
    {"CTM_CCM", ConfigXmlParser::kMatrix, {}, &ConfigXmlParser::hasCtmCcm, [](auto& r) { return &r.ctmCcm[0]; }},
    {"Gamma_Calib",
     ConfigXmlParser::kTable,
     {},
     &ConfigXmlParser::hasGammaCalib,
     [](auto& r) { return &r.gammaCalib[0]; }},
    {"Gamma_Tuning",
     ConfigXmlParser::kTable,
     {},
     &ConfigXmlParser::hasGammaTuning,
     [](auto& r) { return &r.gammaTuning[0]; }},
    {"UnlimitedCT", 2, {"Warm", "Cold"}, &ConfigXmlParser::hasUnlimitedCT, nullptr},
    {"EyeCare", ConfigXmlParser::kEyeCareCoeffs + 2, {"MaxCCT", "MinCCT"}, &ConfigXmlParser::hasEyeCare, nullptr},
    {"WPCParam", 9, {}, &ConfigXmlParser::hasWpcParam, [](auto& r) { return &r.wpcParam[0]; }},
}};

namespace {

struct XmlRelease {
    void operator()(xmlParserCtxt* context) const { xmlFreeParserCtxt(context); }
    void operator()(xmlDoc* document) const { xmlFreeDoc(document); }
    void operator()(xmlChar* text) const { xmlFree(text); }
};
template <typename T>
using XmlOwner = std::unique_ptr<T, XmlRelease>;

constexpr std::string_view kWhiteSpace = " \t\r\n";

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
    return node.content != nullptr && textOf(node.content).find_first_not_of(kWhiteSpace) != std::string::npos;
}

// Entities are not followed: a few of them can make any amount of text.
std::optional<std::string> plainText(const xmlNode& element) {
    for (const xmlNode* child = element.children; child != nullptr; child = child->next) {
        if (child->type == XML_ENTITY_REF_NODE || isElement(*child)) return std::nullopt;
    }
    return textOf(XmlOwner<xmlChar>(xmlNodeGetContent(&element)).get());
}

Block readBlock(const BlockForm& form, const xmlNode& element) {
    Block block{&form, xmlGetLineNo(&element), 0, {}, 0};
    for (const xmlNode* child = element.children; child != nullptr; child = child->next) {
        if (block.strayText == 0 && isStrayText(*child)) block.strayText = xmlGetLineNo(child);
        if (!isElement(*child)) continue;
        if (block.count++ > form.count) continue;
        block.values.push_back({xmlGetLineNo(child), textOf(child->name), plainText(*child)});
    }
    return block;
}

void readElement(Document& document, const xmlNode& element) {
    const std::string name = textOf(element.name);
    const auto form = std::find_if(kBlockForms.begin(), kBlockForms.end(),
                                   [&](const BlockForm& candidate) { return candidate.name == name; });
    if (form == kBlockForms.end()) {
        document.unknown.push_back({name, xmlGetLineNo(&element)});
    } else {
        document.blocks.push_back(readBlock(*form, element));
    }
}

// The handler of libxml2's messages as long as it lives; then the one before it again.
class MessageHandler {
public:
    MessageHandler(xmlStructuredErrorFunc handler, void* context)
        : previous(xmlStructuredError), previousContext(xmlStructuredErrorContext) {
        xmlSetStructuredErrorFunc(context, handler);
    }
    ~MessageHandler() { xmlSetStructuredErrorFunc(previousContext, previous); }
    MessageHandler(const MessageHandler&) = delete;
    MessageHandler& operator=(const MessageHandler&) = delete;

private:
    xmlStructuredErrorFunc previous;
    void* previousContext;
};

// The library's log is silent as long as it lives.
class SilentLog {
public:
    SilentLog() = default;
    ~SilentLog() { __android_log_set_minimum_priority(previous); }
    SilentLog(const SilentLog&) = delete;
    SilentLog& operator=(const SilentLog&) = delete;

private:
    int32_t previous = __android_log_set_minimum_priority(ANDROID_LOG_SILENT);
};

void keepMessage(void* document, xmlErrorPtr error) {
    if (error->level < XML_ERR_ERROR) return;
    std::string text = error->message == nullptr ? "" : error->message;
    text.erase(text.find_last_not_of(kWhiteSpace) + 1);
    static_cast<Document*>(document)->messages.push_back({error->line, std::move(text)});
}

}  // namespace

const BlockForm& formOf(std::string_view name) {
    return *std::find_if(kBlockForms.begin(), kBlockForms.end(),
                         [&](const BlockForm& form) { return form.name == name; });
}

const Block* Document::lastOf(const BlockForm& form) const {
    const auto block = std::find_if(blocks.rbegin(), blocks.rend(), [&](const Block& b) { return b.form == &form; });
    return block == blocks.rend() ? nullptr : &*block;
}

long Document::lineOf(const BlockForm& form, size_t index) const {
    const auto block = std::find_if(blocks.rbegin(), blocks.rend(),
                                    [&](const Block& b) { return b.form == &form && index < b.values.size(); });
    return block == blocks.rend() ? 0 : block->values[index].line;
}

std::unique_ptr<ConfigXmlParser> readAsLibrary(const std::filesystem::path& file) {
    PhoneFiles phone = PhoneFiles::empty();
    phone.installCalibration(file);
    const SilentLog silence;
    const MessageHandler handler([](void*, xmlErrorPtr) {}, nullptr);
    auto record = std::make_unique<ConfigXmlParser>();
    record->parser();
    return record;
}

Document readDocument(std::string_view bytes) {
    Document result{bytes, bounds::refusalOf(bytes), false, {}, {}, {}};
    if (result.refusal != Refusal::NONE) return result;
    const XmlOwner<xmlParserCtxt> context(xmlNewParserCtxt());
    if (context == nullptr) throw std::bad_alloc();
    const MessageHandler handler(keepMessage, &result);
    const XmlOwner<xmlDoc> tree(xmlCtxtReadMemory(context.get(), bytes.data(), static_cast<int>(bytes.size()), nullptr,
                                                  nullptr, XML_PARSE_NOBLANKS | XML_PARSE_NONET | XML_PARSE_BIG_LINES));
    result.wellFormed = tree != nullptr;
    if (!result.wellFormed) return result;

    const xmlNode* const root = xmlDocGetRootElement(tree.get());
    for (const xmlNode* child = root == nullptr ? nullptr : root->children; child != nullptr; child = child->next) {
        if (isElement(*child)) readElement(result, *child);
    }
    return result;
}

}  // namespace simulator
