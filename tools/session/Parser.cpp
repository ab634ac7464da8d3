// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <cmath>
#include <utility>

#include "tools/session/Command.h"
#include "tools/text/Text.h"

namespace simulator {

std::string rangeOf(const Argument& argument) {
    switch (argument.kind) {
        case Argument::Kind::UNSIGNED:
        case Argument::Kind::DISPLAY:
            return "a whole number from 0" + (argument.max < UINT32_MAX ? " to " + std::to_string(argument.max) : "");
        case Argument::Kind::INTEGER:
            return "a whole number";
        case Argument::Kind::FLOAT:
        case Argument::Kind::DOUBLE:
            return "a number";
        case Argument::Kind::DURATION:
            return "a duration up to 1000h such as 90s, 20ms, 2.5min or 1h";
        case Argument::Kind::FILE:
            return "the name of a file";
        case Argument::Kind::NAME:
            return "a name of letters, digits, '.', '_' and '-'";
        case Argument::Kind::TEXT:
            return "text";
        case Argument::Kind::WORD:
            break;
    }
    std::string words;
    for (const std::string_view word : argument.words) words += (words.empty() ? "" : ", ") + std::string(word);
    return "one of " + words +
           (argument.max > 0 ? ", or a whole number from 1 to " + std::to_string(argument.max) : "");
}

std::string nameOf(const Argument& argument) {
    std::string result(argument.name);
    std::transform(result.begin(), result.end(), result.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return result;
}

namespace {

// "LEVEL", or "ELEMENT 3 of 9".
std::string placeOf(const Argument& argument, size_t index) {
    const std::string name = nameOf(argument);
    return argument.count == 1 ? name
                               : name + " " + std::to_string(index + 1) + " of " + std::to_string(argument.count);
}

[[noreturn]] void failUsage(const Command& command, const std::string& what) {
    throw ScriptError(std::string(command.name) + ": " + what + "; expected " + usageOf(command));
}

[[noreturn]] void failValue(const Command& command, const Argument& argument, std::string_view word,
                            const std::string& what) {
    const std::string_view nearest = nearestOf(word, argument.words);
    throw ScriptError(std::string(command.name) + ": " + inQuotes(word) + " " + what + "; expected " +
                      (nearest.empty() ? nameOf(argument) + ", " + rangeOf(argument) : std::string(nearest)));
}

template <typename T>
T parseNumber(const Command& command, const Argument& argument, std::string_view word) {
    T value{};
    const char* const end = word.data() + word.size();
    const auto [rest, error] = std::from_chars(word.data(), end, value);
    if (error == std::errc::result_out_of_range) failValue(command, argument, word, "is out of range");
    if (error != std::errc() || rest != end)
        failValue(command, argument, word, std::is_integral_v<T> ? "is not a whole number" : "is not a number");
    return value;
}

std::chrono::milliseconds parseDuration(const Command& command, const Argument& argument, std::string_view word) {
    constexpr double kLongest = 1000 * 3600'000.0;  // milliseconds
    struct Unit {
        std::string_view name;
        double milliseconds;
    };
    constexpr std::array<Unit, 4> kUnits = {{{"ms", 1}, {"s", 1000}, {"min", 60'000}, {"h", 3600'000}}};
    const size_t digits = std::min(word.find_first_not_of("0123456789."), word.size());
    const auto unit = std::find_if(kUnits.begin(), kUnits.end(),
                                   [&](const Unit& candidate) { return candidate.name == word.substr(digits); });
    if (digits == word.size())
        failValue(command, argument, word, "has no unit: write " + std::string(word) + "s, without a space");
    if (unit == kUnits.end()) failValue(command, argument, word, "is not a duration");
    const double length = parseNumber<double>(command, argument, word.substr(0, digits)) * unit->milliseconds;
    if (!(length <= kLongest)) failValue(command, argument, word, "is out of range");
    return std::chrono::milliseconds(std::llround(length));
}

bool isName(std::string_view word) {
    const auto isNameCharacter = [](unsigned char c) {
        return std::isalnum(c) != 0 || c == '.' || c == '_' || c == '-';
    };
    return std::isalnum(static_cast<unsigned char>(word.front())) != 0 &&
           std::all_of(word.begin(), word.end(), isNameCharacter);
}

Values::Value parseValue(const Command& command, const Argument& argument, std::string_view word) {
    switch (argument.kind) {
        case Argument::Kind::UNSIGNED:
        case Argument::Kind::DISPLAY: {
            const auto value = parseNumber<uint64_t>(command, argument, word);
            if (value > argument.max) failValue(command, argument, word, "is out of range");
            return value;
        }
        case Argument::Kind::INTEGER:
            return parseNumber<int32_t>(command, argument, word);
        case Argument::Kind::FLOAT:
            return parseNumber<float>(command, argument, word);
        case Argument::Kind::DOUBLE:
            return parseNumber<double>(command, argument, word);
        case Argument::Kind::DURATION:
            return parseDuration(command, argument, word);
        case Argument::Kind::NAME:
            if (!isName(word)) failValue(command, argument, word, "is not a name");
            break;
        case Argument::Kind::WORD: {
            if (std::find(argument.words.begin(), argument.words.end(), word) != argument.words.end()) break;
            uint64_t number = 0;
            const char* const end = word.data() + word.size();
            const bool isNumber = std::from_chars(word.data(), end, number).ptr == end;
            if (!isNumber || number == 0 || number > argument.max) failValue(command, argument, word, "is not known");
            break;
        }
        case Argument::Kind::FILE:
            if (word.find('\0') != std::string_view::npos) failValue(command, argument, word, "is not a file name");
            break;
        case Argument::Kind::TEXT:
            break;
    }
    return std::string(word);
}

// Throws if no word may follow the values, which says more than that this word is not known.
void checkWith(const Command& command, Values values, std::string_view word) {
    if (command.check == nullptr) return;
    values.add(std::string(word));
    command.check(values);
}

Values parseArguments(const Command& command, std::string_view rest) {
    Values values;
    for (const Argument& argument : command.arguments) {
        for (size_t i = 0; i < argument.count; ++i) {
            const bool takesAll = argument.kind == Argument::Kind::TEXT;
            const std::string_view word = takesAll ? std::exchange(rest, {}) : takeWord(rest);
            const std::string_view value = trimmed(word);
            if (value.empty() && argument.optional) return values;
            if (value.empty()) failUsage(command, placeOf(argument, i) + " is missing");
            try {
                values.add(parseValue(command, argument, value));
            } catch (const ScriptError&) {
                if (argument.kind == Argument::Kind::WORD) checkWith(command, values, value);
                throw;
            }
        }
    }
    if (!trimmed(rest).empty()) failUsage(command, "too many arguments, from " + inQuotes(trimmed(rest)) + " on");
    return values;
}

}  // namespace

std::string usageOf(const Command& command) {
    constexpr size_t kMostChoices = 5;  // of words that replace their name
    std::string usage(command.name);
    for (const Argument& argument : command.arguments) {
        std::string word = nameOf(argument);
        if (argument.kind == Argument::Kind::WORD && argument.words.size() <= kMostChoices) {
            word.clear();
            for (const std::string_view choice : argument.words)
                word += (word.empty() ? "" : "|") + std::string(choice);
        }
        if (argument.count > 1) word += argument.optional ? "..." : " x" + std::to_string(argument.count);
        usage += argument.optional ? " [" + word + "]" : " " + word;
    }
    return usage;
}

const Command& commandNamed(std::string_view name, const std::vector<Command>& table) {
    std::vector<std::string_view> names;
    for (const Command& command : table) {
        if (command.name == name) return command;
        names.push_back(command.name);
    }
    const std::string_view nearest = nearestOf(name, names);
    const std::string hint = nearest.empty() ? "a command such as " + std::string(names.front()) : std::string(nearest);
    throw ScriptError("unknown command " + inQuotes(name) + "; expected " + hint);
}

ParsedLine parseLine(std::string_view line, const std::vector<Command>& table) {
    const size_t commentBegin = std::min(line.find('#'), line.size());
    const std::string_view text = trimmed(line.substr(0, commentBegin));
    const std::string_view comment = trimmed(line.substr(commentBegin));
    std::string_view rest = text;
    const std::string_view word = takeWord(rest);
    if (word.empty()) return {nullptr, text, comment, {}};
    const Command& command = commandNamed(word, table);
    Values values = parseArguments(command, rest);
    if (command.check != nullptr) command.check(values);
    return {&command, text, comment, std::move(values)};
}

}  // namespace simulator
