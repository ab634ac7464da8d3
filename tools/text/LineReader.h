// SPDX-License-Identifier: Apache-2.0
// The lines of a text that people wrote.
#pragma once

#include <istream>
#include <stdexcept>
#include <string>
#include <string_view>

namespace simulator {

// A line that is longer than LineReader::kLongest.
class LineTooLong : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

class LineReader {
public:
    static constexpr size_t kLongest = 1 << 16;  // bytes of a line

    // Reads from stream one line at a time. Messages call the text name and say that expected was expected, such as
    // "a script".
    LineReader(std::istream& stream, std::string name, std::string expected);

    // Goes to the next line; false at the end. Throws std::runtime_error when reading fails, and LineTooLong, after
    // which the next line can be read: "NAME:LINE: what is wrong; what was expected".
    bool next();

    // The line without its end, the first one without the byte order mark that it may begin with.
    std::string_view line() const { return text; }
    size_t number() const { return count; }  // of the line, from 1
    std::string place() const;               // of the line, "NAME:LINE: "

private:
    std::istream& input;
    const std::string shownName;
    const std::string expectedText;
    std::string text;
    size_t count = 0;
};

}  // namespace simulator
