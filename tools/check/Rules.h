// SPDX-License-Identifier: Apache-2.0
// The rules of a check: what each looks at and what it finds.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "tools/check/Check.h"
#include "tools/check/Document.h"

namespace simulator {

// What is checked: the text, and what the library made of it.
struct Subject {
    const Document& document;
    const ConfigXmlParser& record;
    std::optional<Chromaticity> driverWhite;
};

class Notes;

struct Rule {
    std::string_view name;
    Finding::Severity severity;
    void (*look)(const Subject& subject, Notes& notes);
};

// Takes down what one rule finds, in each block up to kMostFindings of them and then only how many.
class Notes {
public:
    Notes(const Rule& looking, std::vector<Finding>& all) : rule(looking), findings(all) {}
    void add(std::string_view block, long line, std::optional<size_t> value, std::string what, std::string expected);
    // Of the block that the library has in the end.
    void addBlock(const Subject& subject, const CalibrationBlock& form, std::string what, std::string expected);
    // Of the value of that index, with its line in the file.
    void addValue(const Subject& subject, const CalibrationBlock& form, size_t index, std::string what,
                  std::string expected);

private:
    const Rule& rule;
    std::vector<Finding>& findings;
    struct Listed {
        size_t count = 0;
        long lastLine = 0;   // of those that are listed
        size_t closing = 0;  // index in findings of the one that counts the others
    };
    std::map<std::string, Listed, std::less<>> listed;  // by block
};

// Errors: where the library does not read what the text says.
std::vector<Rule> textRules();

// Warnings: values that are read as they are written and that the display will suffer from.
std::vector<Rule> valueRules();

// With at most that many significant digits.
std::string numberText(double value, int digits = 7);

}  // namespace simulator
