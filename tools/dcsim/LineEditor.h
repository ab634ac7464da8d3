// SPDX-License-Identifier: Apache-2.0
// Lines typed at a terminal.
#pragma once

#include <histedit.h>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace dcsim {

// Reads lines from standard input with a prompt, a history in memory and completion with the tabulator. Ctrl-C clears
// the line while it is edited; at other times it is a signal as ever. Used by one thread.
class LineEditor {
public:
    // The words that the last word of a line up to the cursor may become.
    using Completer = std::function<std::vector<std::string>(std::string_view lineUpToCursor)>;

    // Throws std::runtime_error when the terminal cannot be used.
    explicit LineEditor(Completer completer);
    ~LineEditor();
    LineEditor(const LineEditor&) = delete;
    LineEditor& operator=(const LineEditor&) = delete;

    // The next line, without its end; nothing at the end of the input.
    std::optional<std::string> next();

private:
    static unsigned char onTabulator(EditLine* editor, int key);
    unsigned char complete();

    const Completer completionsOf;
    EditLine* const editor;
    History* const past;
};

}  // namespace dcsim
