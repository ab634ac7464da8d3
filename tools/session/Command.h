// SPDX-License-Identifier: Apache-2.0
// The script language: one command a line, words separated by blanks, from '#' to the end of the line a comment.
#pragma once

#include <chrono>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace simulator {

class Session;

// What an argument is and which values it takes.
struct Argument {
    enum class Kind {
        UNSIGNED,  // a whole number from 0 to 2^64 - 1; or to max
        DISPLAY,   // the same: the number of a display
        INTEGER,   // a whole number from -2^31 to 2^31 - 1
        FLOAT,     // a number that a float holds, inf and nan among them
        DOUBLE,    // a number that a double holds, inf and nan among them
        DURATION,  // a number with ms, s, min or h behind it; 1000 hours at most
        FILE,      // the name of a file, as the shell that started the program sees it
        NAME,      // letters, digits, '.', '_' and '-', beginning with a letter or digit
        TEXT,      // the rest of the line, blanks included
        WORD,      // one of words; or, with a max, a whole number from 1 to max
    };

    std::string_view name;
    Kind kind;
    size_t count = 1;       // how many such values follow one another; when optional, how many at most
    bool optional = false;  // may be left out, with all that follow
    uint64_t max = UINT64_MAX;
    std::vector<std::string_view> words = {};
};

// How help and errors name an argument: "LEVEL".
std::string nameOf(const Argument& argument);

// The values that an argument takes: "a whole number from 0 to 1024". The limits of a number's type are not named.
std::string rangeOf(const Argument& argument);

// The values of a line's arguments, in order and of the kinds that the command takes.
class Values {
public:
    using Value = std::variant<uint64_t, int32_t, float, double, std::chrono::milliseconds, std::string>;

    void add(Value value) { values.push_back(std::move(value)); }
    size_t size() const { return values.size(); }

    uint64_t number(size_t index) const { return std::get<uint64_t>(values[index]); }
    int32_t integer(size_t index) const { return std::get<int32_t>(values[index]); }
    float real(size_t index) const { return std::get<float>(values[index]); }
    double wide(size_t index) const { return std::get<double>(values[index]); }
    std::chrono::milliseconds duration(size_t index) const {
        return std::get<std::chrono::milliseconds>(values[index]);
    }
    const std::string& text(size_t index) const { return std::get<std::string>(values[index]); }

private:
    std::vector<Value> values;
};

// One row of the table of commands, from which parsing, error texts and help all come.
struct Command {
    std::string_view name;
    std::vector<Argument> arguments;
    std::string_view summary;
    void (*run)(Session& session, const Values& values);
    std::string_view group = "";  // begins a group of that title; the rows below it that have none belong to it too
    void (*check)(const Values& values) = nullptr;  // throws ScriptError for values that do not go together
    std::string details = {};                       // lines of help below those of the arguments
};

// Every command, in the order in which help shows them.
const std::vector<Command>& commands();

// The row of that name in table, which is not empty. Throws ScriptError with the nearest name if there is none.
const Command& commandNamed(std::string_view name, const std::vector<Command>& table);

// The command and its arguments: "setUnlimitedCT DISPLAY LEVEL".
std::string usageOf(const Command& command);

// A line that cannot be carried out: what is wrong and what was expected, "X; expected Y".
class ScriptError : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct ParsedLine {
    const Command* command;    // null for a line with nothing but blanks and a comment
    std::string_view text;     // the line without its comment and the blanks around it
    std::string_view comment;  // from '#' on
    Values values;
};

// Takes the line's command from table, which outlives the answer. Throws ScriptError.
ParsedLine parseLine(std::string_view line, const std::vector<Command>& table = commands());

}  // namespace simulator
