// SPDX-License-Identifier: Apache-2.0
// What happens in a session: the phone's events, and those of the script.
#pragma once

#include <chrono>
#include <string>
#include <variant>
#include <vector>

#include "simulator/Event.h"
#include "tools/text/XmlMessages.h"

namespace simulator {

// A line of the script that begins; text is empty for a comment alone.
struct ScriptLine {
    size_t number;
    std::string text;
    std::string comment;  // from '#' on
};

// The line that began last has been carried out.
struct LineDone {};

// A file of the host was copied to the phone.
struct InstalledFile {
    std::string path;  // the phone's
    std::string from;
};

struct WrittenPicture {
    std::string file;
    uint64_t display;
    uint64_t pixels;
    uint64_t clippedPixels;
};

// A named value, or a named group of entries.
struct StateEntry {
    std::string name;
    Value value = false;  // of an entry without entries
    std::vector<StateEntry> entries = {};
};
// The state of the service and of everything it uses.
using State = std::vector<StateEntry>;

struct SessionEvent {
    using What = std::variant<Event::What, XmlMessage, ScriptLine, LineDone, InstalledFile, WrittenPicture, State>;

    platform::Clock::Duration time;
    What what;

    int64_t milliseconds() const { return std::chrono::duration_cast<std::chrono::milliseconds>(time).count(); }
};

// The phone's event of type T, if it is one.
template <typename T>
const T* phoneEvent(const SessionEvent& event) {
    const auto* const what = std::get_if<Event::What>(&event.what);
    return what == nullptr ? nullptr : std::get_if<T>(what);
}

}  // namespace simulator
