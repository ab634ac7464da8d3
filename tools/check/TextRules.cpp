// SPDX-License-Identifier: Apache-2.0
// What is wrong with the text of a calibration file.
#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdlib>
#include <utility>

#include "simulator/Event.h"
#include "tools/check/Rules.h"
#include "tools/text/Text.h"

namespace simulator {

namespace {

constexpr long kWhite = 0xFFFFFF;
constexpr size_t kColorDigits = 6;

// The whole file.

void refused(const Subject& subject, Notes& notes) {
    const Refusal refusal = subject.document.refusal;
    if (refusal == Refusal::NOT_ACCEPTED)
        notes.add("", 0, {}, "is too large and is not used",
                  "at most " + std::to_string(kLongestCalibrationFile) + " bytes");
    if (refusal == Refusal::DECLARES_ENTITIES)
        notes.add("", 0, {}, "declares entities and is not used", "a document without entity declarations");
}

void compressed(const Subject& subject, Notes& notes) {
    if (!subject.document.isCompressed) return;
    notes.add("", 0, {}, "is compressed, which the phone's libxml2 may not read", "XML text");
}

void encoding(const Subject& subject, Notes& notes) {
    if (subject.document.hasCommonEncoding) return;
    notes.add("", 1, {},
              "has the encoding " + inQuotes(subject.document.encoding) + ", which the phone's libxml2 may not read",
              "UTF-8, UTF-16, ISO-8859-1 or ASCII");
}

void notWellFormed(const Subject& subject, Notes& notes) {
    if (subject.document.refusal != Refusal::NOT_WELL_FORMED) return;
    const std::vector<XmlMessage>& messages = subject.document.messages;
    constexpr const char* kExpected = "well-formed XML";
    if (messages.empty()) notes.add("", 0, {}, "is not well-formed and is not used", kExpected);
    for (const XmlMessage& message : messages) {
        notes.add("", message.line, {},
                  "is not well-formed and is not used: " + printable(message.message.substr(0, 120)), kExpected);
    }
}

// Blocks.

std::string expectedBlock(std::string_view name) {
    std::vector<std::string_view> names;
    std::string all;
    for (const CalibrationBlock& form : kCalibrationBlocks) {
        names.emplace_back(form.name);
        all.append(all.empty() ? "" : ", ").append(form.name);
    }
    const std::string_view nearest = nearestOf(name, names);
    return nearest.empty() ? "one of " + all : std::string(nearest);
}

void unknownBlock(const Subject& subject, Notes& notes) {
    for (const UnknownElement& element : subject.document.unknown) {
        notes.add("", element.line, {}, inQuotes(element.name) + " is not a block of a calibration and is ignored",
                  expectedBlock(element.name));
    }
}

void noBlock(const Subject& subject, Notes& notes) {
    if (subject.document.refusal != Refusal::NONE || !subject.document.blocks.empty()) return;
    notes.add("", 0, {}, "has no block of a calibration", "blocks as the children of the document's first element");
}

std::string countText(const Block& block) {
    return std::to_string(block.count) + " of " + std::to_string(block.form->elements) + " values";
}

void shortBlock(const Subject& subject, Notes& notes) {
    for (const Block& block : subject.document.blocks) {
        if (block.count >= block.form->elements) continue;
        notes.add(block.form->name, block.line, {}, "has " + countText(block) + " and is not complete",
                  std::to_string(block.form->elements) + " values, an element each");
    }
}

void overlongBlock(const Subject& subject, Notes& notes) {
    for (const Block& block : subject.document.blocks) {
        const size_t needed = block.form->elements;
        if (block.count <= needed) continue;
        notes.add(block.form->name, block.values[needed].line, needed + 1,
                  "is ignored with all that follow it (" + std::to_string(block.count) + " values in all)",
                  std::to_string(needed) + " values");
    }
}

void repeatedBlock(const Subject& subject, Notes& notes) {
    std::map<const CalibrationBlock*, long> first;
    for (const Block& block : subject.document.blocks) {
        const auto [place, isFirst] = first.emplace(block.form, block.line);
        if (isFirst) continue;
        notes.add(block.form->name, block.line, {},
                  "occurs again and takes the place of the one in line " + std::to_string(place->second), "one block");
    }
}

void strayText(const Subject& subject, Notes& notes) {
    for (const Block& block : subject.document.blocks) {
        if (block.strayText == 0) continue;
        notes.add(block.form->name, block.strayText, {}, "has text between its values, which is ignored",
                  "each value in its own element");
    }
}

// The name of a value where the reader looks for another one: UnlimitedCT without Warm, EyeCare without MaxCCT.
void missingName(const Block& block, std::string_view name, Notes& notes) {
    const auto end = block.values.begin() + static_cast<std::ptrdiff_t>(block.form->elements);
    const std::string text(name);
    const auto others = valueNamesOf(*block.form);
    const auto near = std::find_if(block.values.begin(), end, [&](const ValueText& value) {
        return isNear(value.name, name) && std::find(others.begin(), others.end(), value.name) == others.end();
    });
    if (near == end) {
        notes.add(block.form->name, block.line, {}, "has no " + text + ", which stays 0",
                  text + " among the first " + std::to_string(block.form->elements) + " values");
        return;
    }
    const bool isCoefficient = block.form->elements > 2;
    notes.add(block.form->name, near->line, static_cast<size_t>(near - block.values.begin()) + 1,
              "is named " + inQuotes(near->name) +
                  (isCoefficient ? " and is taken as a coefficient; " : " and is ignored; ") + text + " stays 0",
              text);
}

void valueName(const Subject& subject, Notes& notes) {
    for (const Block& block : subject.document.blocks) {
        if (block.count < block.form->elements) continue;
        for (const std::string_view name : valueNamesOf(*block.form)) {
            if (name.empty()) continue;
            size_t seen = 0;
            for (size_t i = 0; i < block.form->elements; ++i) {
                if (block.values[i].name != name || ++seen == 1) continue;
                notes.add(block.form->name, block.values[i].line, i + 1,
                          "is " + std::string(name) + " once more and takes the place of the one before",
                          std::string(name) + " once");
            }
            if (seen == 0) missingName(block, name, notes);
        }
    }
}

// Values.

// A value's text as the library converts it.
struct Written {
    std::string_view text;
    bool isColor;           // hexadecimal, otherwise a decimal number
    double number;          // the library's, before it becomes a float
    std::string_view body;  // the text that makes the number, without white space; empty when there is none
    std::string_view rest;  // what follows and is ignored
};

Written convert(const std::string& text, bool isColor) {
    char* end = nullptr;
    const double number =
        isColor ? static_cast<double>(strtol(text.c_str(), &end, /*base=*/16)) : strtod(text.c_str(), &end);
    const auto used = static_cast<size_t>(end - text.c_str());
    const std::string_view all(text);
    return {trimmed(all), isColor, number, trimmed(all.substr(0, used)), trimmed(all.substr(used))};
}

bool hasLetter(std::string_view text, std::string_view letters) {
    return text.find_first_of(letters) != std::string_view::npos;
}

bool isHexadecimal(const Written& value) {
    return hasLetter(value.body, "xX");
}

// Digits alone and not as many as a colour has: meant as a decimal number.
bool looksDecimal(const Written& value) {
    return !value.body.empty() && value.rest.empty() && value.body.size() != kColorDigits &&
           value.body.find_first_not_of("0123456789") == std::string_view::npos;
}

// The low 32 bits of the number, which are what the library takes.
std::string colorText(std::string_view number) {
    char text[32];
    snprintf(text, sizeof text, "0x%06X",
             static_cast<uint32_t>(strtol(std::string(number).c_str(), nullptr, /*base=*/16)));
    return text;
}

std::string readAs(const Written& value) {
    return inQuotes(value.text) + " is read as " + (value.isColor ? colorText(value.body) : numberText(value.number));
}

// Each of these says what is wrong with a value, or nothing.
using Fault = std::string (*)(const Written& value, const CalibrationBlock& form);

std::string noNumber(const Written& value, const CalibrationBlock& /*form*/) {
    if (!value.body.empty()) return "";
    return (value.text.empty() ? "is empty" : inQuotes(value.text) + " is not a number") + " and is read as 0";
}

std::string trailingText(const Written& value, const CalibrationBlock& /*form*/) {
    if (value.body.empty() || value.rest.empty()) return "";
    const bool hasComma = value.rest.front() == ',' && !value.isColor;
    return readAs(value) +
           (hasComma ? ": it has a decimal comma instead of a point" : ", without its end " + inQuotes(value.rest));
}

std::string otherBase(const Written& value, const CalibrationBlock& /*form*/) {
    if (value.isColor) return looksDecimal(value) ? readAs(value) + ", as hexadecimal" : "";
    return isHexadecimal(value) ? readAs(value) + ", as hexadecimal" : "";
}

std::string nameOfNotFinite(double number) {
    return std::isnan(number) ? "NaN" : number > 0 ? "infinity" : "minus infinity";
}

std::string notFinite(const Written& value, const CalibrationBlock& /*form*/) {
    const bool isWord = !value.isColor && !isHexadecimal(value) && hasLetter(value.body, "nN");
    return isWord ? inQuotes(value.text) + " is read as " + nameOfNotFinite(value.number) : "";
}

std::string outOfRange(const Written& value, const CalibrationBlock& form) {
    if (value.isColor) {
        const bool fits = value.number >= 0 && value.number <= static_cast<double>(kWhite);
        if (value.body.empty() || looksDecimal(value)) return "";
        if (!fits) return readAs(value) + ", which is not a colour";
        const size_t digits = value.body.size() - (isHexadecimal(value) ? 2 : 0);
        return digits == kColorDigits ? "" : readAs(value) + ", from " + std::to_string(digits) + " digits";
    }
    if (value.body.empty() || hasLetter(value.body, "nN")) return "";
    const bool staysDouble = form.isComplete == &ConfigXmlParser::hasEyeCare;
    const double kept = staysDouble ? value.number : static_cast<double>(static_cast<float>(value.number));
    const bool hasDigit = hasLetter(value.body.substr(0, value.body.find_first_of("eEpP")), "123456789");
    if (std::isinf(kept)) return inQuotes(value.text) + " is read as " + nameOfNotFinite(kept);
    return kept == 0.0 && hasDigit ? inQuotes(value.text) + " is read as 0, because it is too small" : "";
}

// Looks at every value that the library reads as a number.
template <Fault fault>
void inValues(const Subject& subject, Notes& notes) {
    for (const Block& block : subject.document.blocks) {
        const CalibrationBlock& form = *block.form;
        const bool areColors = form.isComplete == &ConfigXmlParser::hasUnlimitedCT;
        const auto names = valueNamesOf(form);
        for (size_t i = 0; i < std::min(form.elements, block.values.size()); ++i) {
            const ValueText& value = block.values[i];
            const bool isRead = !areColors || std::find(names.begin(), names.end(), value.name) != names.end();
            if (!value.text || !isRead) continue;
            std::string what = fault(convert(*value.text, areColors), form);
            if (what.empty()) continue;
            notes.add(form.name, value.line, i + 1, std::move(what),
                      areColors ? "a colour 0xRRGGBB, six hexadecimal digits" : "a decimal number");
        }
    }
}

void notPlain(const Subject& subject, Notes& notes) {
    for (const Block& block : subject.document.blocks) {
        for (size_t i = 0; i < block.values.size(); ++i) {
            if (block.values[i].text) continue;
            notes.add(block.form->name, block.values[i].line, i + 1, "is made of entities or of further elements",
                      "the number itself");
        }
    }
}

}  // namespace

std::vector<Rule> textRules() {
    constexpr auto kError = Finding::Severity::ERROR;
    return {
        {"refused", kError, refused},
        {"compressed", Finding::Severity::WARNING, compressed},
        {"encoding", Finding::Severity::WARNING, encoding},
        {"not-well-formed", kError, notWellFormed},
        {"unknown-block", kError, unknownBlock},
        {"no-block", kError, noBlock},
        {"short-block", kError, shortBlock},
        {"overlong-block", kError, overlongBlock},
        {"repeated-block", kError, repeatedBlock},
        {"stray-text", kError, strayText},
        {"value-name", kError, valueName},
        {"value-no-number", kError, inValues<noNumber>},
        {"value-trailing-text", kError, inValues<trailingText>},
        {"value-base", kError, inValues<otherBase>},
        {"value-not-finite", kError, inValues<notFinite>},
        {"value-range", kError, inValues<outOfRange>},
        {"value-not-plain", Finding::Severity::WARNING, notPlain},
    };
}

}  // namespace simulator
