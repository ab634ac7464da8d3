// SPDX-License-Identifier: Apache-2.0
#include "tools/session/Completion.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "tools/text/Text.h"

namespace simulator {

namespace {

namespace fs = std::filesystem;

std::vector<std::string_view> wordsOf(std::string_view line) {
    std::vector<std::string_view> words;
    for (std::string_view word = takeWord(line); !word.empty(); word = takeWord(line)) words.push_back(word);
    return words;
}

// The argument that the word of that index belongs to; null when there is none.
const Argument* argumentAt(const Command& command, size_t index) {
    for (const Argument& argument : command.arguments) {
        if (index < argument.count) return &argument;
        index -= argument.count;
    }
    return nullptr;
}

// Names of files in the folder that begun names; hidden ones only where it begins with a dot.
std::vector<std::string> filesLike(std::string_view begun) {
    const size_t slash = begun.rfind('/');
    const std::string folder(begun.substr(0, slash == std::string_view::npos ? 0 : slash + 1));
    const bool hidden = begun.substr(folder.size(), 1) == ".";
    std::vector<std::string> names;
    std::error_code error;
    fs::directory_iterator entry(folder.empty() ? "." : folder, error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        const std::string name = entry->path().filename().string();
        std::error_code ignored;
        if (hidden == (name[0] == '.')) names.push_back(folder + name + (entry->is_directory(ignored) ? "/" : ""));
    }
    return names;
}

std::vector<std::string> valuesOf(const Argument& argument, std::string_view begun, uint64_t displays) {
    if (argument.kind == Argument::Kind::FILE) return filesLike(begun);
    std::vector<std::string> values(argument.words.begin(), argument.words.end());
    if (argument.kind == Argument::Kind::DISPLAY) {
        for (uint64_t display = 0; display < displays; ++display) values.push_back(std::to_string(display));
    }
    return values;
}

std::vector<std::string> candidatesOf(std::string_view line, const CompletionContext& context) {
    const std::string_view begun = lastWordOf(line);
    const std::vector<std::string_view> before = wordsOf(line.substr(0, line.size() - begun.size()));
    std::vector<std::string> candidates;
    if (before.empty()) {
        for (const Command& command : context.table) candidates.emplace_back(command.name);
        return candidates;
    }
    const auto command = std::find_if(context.table.begin(), context.table.end(),
                                      [&](const Command& row) { return row.name == before.front(); });
    if (command == context.table.end()) return {};
    const Argument* const argument = argumentAt(*command, before.size() - 1);
    return argument == nullptr ? candidates : valuesOf(*argument, begun, context.displays);
}

}  // namespace

std::string_view lastWordOf(std::string_view lineUpToCursor) {
    const size_t blank = lineUpToCursor.find_last_of(" \t");
    return blank == std::string_view::npos ? lineUpToCursor : lineUpToCursor.substr(blank + 1);
}

std::vector<std::string> completionsOf(std::string_view lineUpToCursor, const CompletionContext& context) {
    if (lineUpToCursor.find('#') != std::string_view::npos) return {};
    const std::string_view begun = lastWordOf(lineUpToCursor);
    std::vector<std::string> candidates = candidatesOf(lineUpToCursor, context);
    const auto isOther = [begun](const std::string& word) { return word.compare(0, begun.size(), begun) != 0; };
    candidates.erase(std::remove_if(candidates.begin(), candidates.end(), isOther), candidates.end());
    std::sort(candidates.begin(), candidates.end());
    return candidates;
}

}  // namespace simulator
