// SPDX-License-Identifier: Apache-2.0
#include "tools/session/Help.h"

#include <algorithm>

#include "tools/text/Text.h"

namespace simulator {

namespace {

constexpr size_t kWidth = 80;

std::string capitalized(std::string_view title) {
    std::string text(title);
    if (!text.empty() && text[0] >= 'a' && text[0] <= 'z') text[0] = static_cast<char>(text[0] - 'a' + 'A');
    return text;
}

// "; 9 of them".
std::string countOf(const Argument& argument) {
    if (argument.count > 1)
        return argument.optional ? "; up to " + std::to_string(argument.count) + " of them"
                                 : "; " + std::to_string(argument.count) + " of them";
    return argument.optional ? "; may be left out" : "";
}

// Begins in that column; so do the lines that follow.
std::string wrapped(std::string_view words, size_t column) {
    std::string text;
    size_t width = column;
    for (std::string_view word = takeWord(words); !word.empty(); word = takeWord(words)) {
        const bool isFirst = text.empty();
        const bool fits = width + 1 + word.size() <= kWidth;
        text += isFirst ? "" : fits ? " " : "\n" + std::string(column, ' ');
        width = (isFirst || !fits ? column : width + 1) + word.size();
        text += word;
    }
    return text;
}

}  // namespace

std::string helpOf(const std::vector<Command>& table) {
    std::string text;
    std::string line;
    for (const Command& command : table) {
        if (!command.group.empty()) {
            text += line + "\n" + (text.empty() ? "" : "\n") + capitalized(command.group) + "\n";
            line = " ";
        }
        if (line.size() + 1 + command.name.size() > kWidth) {
            text += line + "\n";
            line = " ";
        }
        line += " " + std::string(command.name);
    }
    text += line + "\n";
    return text.substr(text.find_first_not_of('\n'));
}

std::string helpOf(const Command& command) {
    size_t width = 0;
    for (const Argument& argument : command.arguments) width = std::max(width, argument.name.size());
    std::string text = wrapped(usageOf(command), 0) + "\n    " + wrapped(command.summary, 4) + "\n";
    for (const Argument& argument : command.arguments) {
        const std::string name = nameOf(argument);
        text += "    " + name + std::string(width + 2 - name.size(), ' ') +
                wrapped(rangeOf(argument) + countOf(argument), width + 6) + "\n";
    }
    return text + command.details;
}

}  // namespace simulator
