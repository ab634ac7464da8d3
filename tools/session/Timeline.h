// SPDX-License-Identifier: Apache-2.0
// Shows a session while it runs.
#pragma once

#include <platform/Mutex.h>

#include <functional>
#include <ostream>

#include "tools/session/SessionEvent.h"

namespace simulator {

// Hands on every event at once, in the order of the calls of report(). Any thread may call it.
class Timeline {
public:
    enum class Format {
        TEXT,  // for people: aligned
        JSON,  // for programs: one object a line, every event
    };

    // How the text looks.
    struct Look {
        bool color = false;    // with a terminal's colours
        bool commands = true;  // with the script's lines
        bool all = false;      // with the calls of the closed libraries, and each message of a ramp on its own line
    };
    using Sink = std::function<void(const SessionEvent& event)>;

    // Each event goes to sink, one at a time.
    explicit Timeline(Sink eventSink) : sink(std::move(eventSink)) {}
    // Each event is written to output, which the caller owns and keeps for as long as the timeline lives.
    Timeline(std::ostream& output, Format format, Look look = {false, true, false});

    void report(const SessionEvent& event) PLATFORM_EXCLUDES(mutex);

private:
    platform::Mutex mutex;  // one event after another
    const Sink sink PLATFORM_GUARDED_BY(mutex);
};

}  // namespace simulator
