// SPDX-License-Identifier: Apache-2.0
#include "tools/text/LineReader.h"

#include <limits>
#include <utility>

namespace simulator {

namespace {

constexpr int kEnd = std::istream::traits_type::eof();
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

}  // namespace

LineReader::LineReader(std::istream& stream, std::string name, std::string expected)
    : input(stream), shownName(std::move(name)), expectedText(std::move(expected)) {}

bool LineReader::next() {
    text.clear();
    int c = input.get();
    const bool found = c != kEnd;
    if (found) ++count;
    for (; c != kEnd && c != '\n'; c = input.get()) {
        if (text.size() == kLongest) {
            input.ignore(std::numeric_limits<std::streamsize>::max(), '\n');
            throw LineTooLong(place() + "the line is longer than " + std::to_string(kLongest) + " bytes; expected " +
                              expectedText);
        }
        text += static_cast<char>(c);
    }
    if (input.bad()) throw std::runtime_error(shownName + ": could not be read; expected " + expectedText);
    if (count == 1 && line().substr(0, kByteOrderMark.size()) == kByteOrderMark) text.erase(0, kByteOrderMark.size());
    return found;
}

std::string LineReader::place() const {
    return shownName + ":" + std::to_string(count) + ": ";
}

}  // namespace simulator
