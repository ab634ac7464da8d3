// SPDX-License-Identifier: Apache-2.0
#include "tools/text/Text.h"

#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <charconv>
#include <fstream>
#include <iterator>
#include <numeric>
#include <stdexcept>
#include <utility>

#include "simulator/Event.h"

namespace simulator {

namespace {

constexpr std::string_view kBlanks = " \t\n\v\f\r";

// Levenshtein's distance, letter case aside: single characters inserted, left out or replaced.
size_t editDistance(std::string_view a, std::string_view b) {
    const auto lower = [](char c) { return std::tolower(static_cast<unsigned char>(c)); };
    std::vector<size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), size_t{0});
    for (size_t i = 0; i < a.size(); ++i) {
        size_t diagonal = std::exchange(row[0], i + 1);
        for (size_t j = 0; j < b.size(); ++j) {
            const size_t replaced = diagonal + (lower(a[i]) == lower(b[j]) ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({replaced, row[j] + 1, diagonal + 1});
        }
    }
    return row.back();
}

template <typename Real>
std::string fixedText(Real value) {
    char text[512];  // the smallest double has 325 decimals, and some more
    const auto end = std::to_chars(std::begin(text), std::end(text), value, std::chars_format::fixed).ptr;
    return {text, end};
}

}  // namespace

std::string_view trimmed(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
    return text.substr(0, text.find_last_not_of(kBlanks) + 1);
}

std::string_view takeWord(std::string_view& text) {
    text = trimmed(text);
    const std::string_view word = text.substr(0, text.find_first_of(kBlanks));
    text.remove_prefix(word.size());
    return word;
}

std::string joined(const std::vector<std::string>& words, const std::string& separator) {
    std::string text;
    for (const std::string& word : words) text += (text.empty() ? "" : separator) + word;
    return text;
}

std::string shortest(float value) {
    return fixedText(value);
}

std::string shortest(double value) {
    return fixedText(value);
}

std::string harmless(std::string_view text) {
    constexpr char kDelete = '\x7F';
    constexpr char kSecondSet = '\xC2';  // in UTF-8 the first byte of the control characters from U+0080 to U+009F
    std::string shown;
    for (size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        const bool isFirst = (byte < ' ' && byte != '\n') || text[i] == kDelete;
        const bool isSecond = i > 0 && text[i - 1] == kSecondSet && byte >= 0x80 && byte < 0xA0;
        shown += isFirst || isSecond ? printable(text.substr(i, 1)) : std::string(1, text[i]);
    }
    return shown;
}

std::string inQuotes(std::string_view bytes) {
    constexpr size_t kLongest = 60;
    return "\"" + printable(bytes.substr(0, kLongest)) + (bytes.size() > kLongest ? "...\"" : "\"");
}

std::string bytesOf(std::string_view text) {
    std::string bytes;
    for (size_t i = 0; i < text.size(); ++i) {
        auto byte = static_cast<unsigned char>(text[i]);
        const std::string_view escape = text.substr(i, 4);
        const char* const end = escape.data() + escape.size();
        if (escape.substr(0, 2) == "\\n") {
            byte = '\n';
            i += 1;
        } else if (escape.size() == 4 && escape.substr(0, 2) == "\\x" &&
                   std::from_chars(escape.data() + 2, end, byte, 16).ptr == end) {
            i += 3;
        }
        bytes += static_cast<char>(byte);
    }
    return bytes;
}

void requireFile(const std::filesystem::path& file, const std::string& expected) {
    const auto status = std::filesystem::status(file);
    const bool exists = std::filesystem::exists(status);
    const bool isLink = std::filesystem::is_symlink(std::filesystem::symlink_status(file));
    const char* const why = !exists && isLink                       ? "is a link to a file that does not exist"
                            : !exists                               ? "does not exist"
                            : std::filesystem::is_directory(status) ? "is a folder"
                            : !std::ifstream(file).is_open()        ? "cannot be opened"
                                                                    : nullptr;
    if (why != nullptr) throw std::runtime_error(file.string() + ": " + why + "; expected " + expected);
}

void requireNoInput(const std::filesystem::path& output, const std::vector<std::string>& inputs) {
    std::error_code error;
    for (const std::string& input : inputs) {
        if (std::filesystem::equivalent(input, output, error))
            throw std::runtime_error(output.string() + ": is also the input; expected another file to write");
    }
}

void replaceFile(const std::filesystem::path& file, const std::string& text) {
    namespace fs = std::filesystem;
    std::error_code error;
    const fs::path target = fs::weakly_canonical(file, error);  // a link stays a link
    if (fs::exists(target, error) && !fs::is_regular_file(target, error))
        throw std::runtime_error(file.string() + ": is not a regular file; expected a file to write");
    const fs::path fresh = target.string() + "." + std::to_string(getpid()) + ".tmp";
    std::ofstream stream(fresh, std::ios::binary);
    stream << text;
    stream.close();
    error.assign(stream ? 0 : errno, std::generic_category());
    if (stream) fs::rename(fresh, target, error);
    if (stream && !error) return;
    const std::string why = error.message();
    fs::remove(fresh, error);
    throw std::runtime_error(file.string() + ": could not be written (" + why + "); expected a file to write");
}

bool isNear(std::string_view word, std::string_view known) {
    const size_t allowed = std::max<size_t>(1, known.size() / 3);
    return word.size() <= known.size() + allowed && editDistance(word, known) <= allowed;
}

std::string_view nearestOf(std::string_view word, const std::vector<std::string_view>& known) {
    std::string_view nearest;
    for (const std::string_view candidate : known) {
        const bool isNearer = nearest.empty() || editDistance(word, candidate) < editDistance(word, nearest);
        if (isNear(word, candidate) && isNearer) nearest = candidate;
    }
    return nearest;
}

}  // namespace simulator
