// SPDX-License-Identifier: Apache-2.0
#include "fuzz/PlainReading.h"

#include <libxml/parser.h>

#include <cstdlib>
#include <iterator>

namespace fuzz {

namespace {

using Record = CalibrationRecord;

// State of the document's parser.
class Reading {
public:
    void open(const std::string& name) {
        ++depth;
        if (depth == kBlock) block = name;
        if (depth == kBlock) values = coefficients = 0;
        if (depth == kValue) valueName = name;
        if (depth > kValue) plain = false;
        text.clear();
    }
    void close() {
        if (depth == kValue) store();
        --depth;
    }
    void add(const char* characters, size_t count) { text.append(characters, count); }
    // A comment or a processing instruction.
    void interrupt() { plain = plain && depth < kValue; }
    void giveUp() { plain = false; }

    // Null if the reading depends on more.
    std::unique_ptr<Record> result(bool wellFormed) {
        if (!plain) return nullptr;
        return wellFormed ? std::move(record) : std::make_unique<Record>();
    }

private:
    static constexpr int kBlock = 2;
    static constexpr int kValue = 3;

    void store() {
        Record& r = *record;
        if (block == "CTM_WPC") storeFloat(r.ctmWpc, r.hasCtmWpc);
        if (block == "CTM_CCM") storeFloat(r.ctmCcm, r.hasCtmCcm);
        if (block == "Gamma_Calib") storeFloat(r.gammaCalib, r.hasGammaCalib);
        if (block == "Gamma_Tuning") storeFloat(r.gammaTuning, r.hasGammaTuning);
        if (block == "WPCParam") storeFloat(r.wpcParam, r.hasWpcParam);
        if (block == "UnlimitedCT" && values < 2) storeEndPoint();
        if (block == "EyeCare" && values < 38) storeEyeCare();
        ++values;
        r.hasUnlimitedCT = r.hasUnlimitedCT || (block == "UnlimitedCT" && values == 2);
        r.hasEyeCare = r.hasEyeCare || (block == "EyeCare" && values == 38);
    }

    template <size_t N>
    void storeFloat(float (&place)[N], bool& complete) const {
        if (values < N) place[values] = static_cast<float>(strtod(text.c_str(), nullptr));
        if (values + 1 == N) complete = true;
    }

    void storeEndPoint() {
        const auto color = static_cast<int32_t>(strtol(text.c_str(), nullptr, 16) & 0xFFFFFFFF);
        if (valueName == "Warm") record->unlimitedWarm = color;
        if (valueName == "Cold") record->unlimitedCold = color;
    }

    void storeEyeCare() {
        const double value = strtod(text.c_str(), nullptr);
        if (valueName == "MaxCCT") {
            record->eyeCareMaxCCT = value;
        } else if (valueName == "MinCCT") {
            record->eyeCareMinCCT = value;
        } else if (coefficients < std::size(record->eyeCareCoeffs)) {
            record->eyeCareCoeffs[coefficients++] = value;
        }
    }

    std::unique_ptr<Record> record = std::make_unique<Record>();
    bool plain = true;
    int depth = 0;
    std::string block;
    std::string valueName;
    std::string text;         // of the value
    size_t values = 0;        // elements of the block so far
    size_t coefficients = 0;  // eye care's among them
};

Reading& of(void* context) {
    return *static_cast<Reading*>(context);
}

const char* charsOf(const xmlChar* text) {
    return reinterpret_cast<const char*>(text);
}

// A prefix without a namespace is part of the name.
void open(void* context, const xmlChar* name, const xmlChar* prefix, const xmlChar* uri, int, const xmlChar**, int, int,
          const xmlChar**) {
    const bool loose = prefix != nullptr && uri == nullptr;
    of(context).open((loose ? std::string(charsOf(prefix)) + ":" : "") + charsOf(name));
}

void addText(void* context, const xmlChar* text, int length) {
    of(context).add(charsOf(text), static_cast<size_t>(length));
}

xmlSAXHandler handlers() {
    xmlSAXHandler result{};
    result.initialized = XML_SAX2_MAGIC;
    result.startElementNs = open;
    result.endElementNs = [](void* context, const xmlChar*, const xmlChar*, const xmlChar*) { of(context).close(); };
    result.characters = addText;
    result.ignorableWhitespace = addText;
    result.cdataBlock = addText;
    result.comment = [](void* context, const xmlChar*) { of(context).interrupt(); };
    result.processingInstruction = [](void* context, const xmlChar*, const xmlChar*) { of(context).interrupt(); };
    result.internalSubset = [](void* context, const xmlChar*, const xmlChar*, const xmlChar*) { of(context).giveUp(); };
    return result;
}

}  // namespace

std::unique_ptr<CalibrationRecord> readPlainly(const std::string& document) {
    Reading reading;
    xmlSAXHandler events = handlers();
    const int error = xmlSAXUserParseMemory(&events, &reading, document.data(), static_cast<int>(document.size()));
    return reading.result(error == 0);
}

}  // namespace fuzz
