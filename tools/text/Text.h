// SPDX-License-Identifier: Apache-2.0
// Text that people wrote or will read.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace simulator {

// Without the white space at both ends.
std::string_view trimmed(std::string_view text);

// Takes the next word off the front of text; empty when there is none.
std::string_view takeWord(std::string_view& text);

// The words with a separator between each two.
std::string joined(const std::vector<std::string>& words, const std::string& separator = ", ");

// With the fewest digits that name it exactly, without an exponent. Unlike printf, heeds no locale.
std::string shortest(float value);
std::string shortest(double value);

// For a terminal: control characters, which would steer it, as \x1B. Line ends and UTF-8 stay.
std::string harmless(std::string_view text);

// Text in a terminal's colour or weight.
constexpr const char* kRed = "\x1b[31m";
constexpr const char* kYellow = "\x1b[33m";
constexpr const char* kBold = "\x1b[1m";
inline std::string colored(const char* color, const std::string& text) {
    return color + text + "\x1b[0m";
}

// What somebody wrote, for a message: printable, in double quotes, cut when it is long.
std::string inQuotes(std::string_view bytes);

// The bytes that text with the escapes of printable represents; a '\\' that begins none is itself.
std::string bytesOf(std::string_view text);

// Throws std::runtime_error, "FILE: why not; expected EXPECTED", if the file cannot be opened or is a folder.
void requireFile(const std::filesystem::path& file, const std::string& expected);

// Throws std::runtime_error, "FILE: is also the input; expected another file to write", if output is one of the inputs,
// by whatever name or link. Empty names and files that do not exist are none.
void requireNoInput(const std::filesystem::path& output, const std::vector<std::string>& inputs);

// Writes a file as a whole: on a fault the old one stays as it is. Throws std::runtime_error, "FILE: why not; expected
// a file to write".
void replaceFile(const std::filesystem::path& file, const std::string& text);

// Whether word is probably a misspelt known: at most a third of known's characters differ, at least one may. Letter
// case does not count.
bool isNear(std::string_view word, std::string_view known);

// The known word that is nearest to word, if one is near; otherwise empty.
std::string_view nearestOf(std::string_view word, const std::vector<std::string_view>& known);

}  // namespace simulator
