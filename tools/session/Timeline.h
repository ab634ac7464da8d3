// SPDX-License-Identifier: Apache-2.0
// Shows a session while it runs.
#pragma once

#include <platform/Mutex.h>

#include <functional>
#include <ostream>
#include <utility>

#include "tools/session/SessionEvent.h"

namespace simulator {

// Hands every event to its sink at once, one at a time, in the order of the calls of report(). Any thread may call it.
class Timeline {
public:
    using Sink = std::function<void(const SessionEvent& event)>;

    explicit Timeline(Sink eventSink) : sink(std::move(eventSink)) {}

    void report(const SessionEvent& event) PLATFORM_EXCLUDES(mutex);

private:
    platform::Mutex mutex;  // one event after another
    const Sink sink PLATFORM_GUARDED_BY(mutex);
};

// How the text looks.
struct Look {
    bool color = false;    // with a terminal's colours
    bool commands = true;  // with the script's lines
    bool all = false;      // with the calls of the closed libraries, and each message of a ramp on its own line
};
// Writes the events to output, which outlives it, for people: aligned.
Timeline::Sink textWriter(std::ostream& output, Look look);

}  // namespace simulator
