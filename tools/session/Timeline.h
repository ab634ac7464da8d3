// Shows a session while it runs.
#pragma once

#include <platform/Mutex.h>

#include <functional>
#include <ostream>

#include "tools/session/Event.h"

namespace simulator {

// Hands every event on at once, in the order in which report() is called, with the time of the process's clock. Any
// thread may call it.
class Timeline {
public:
    enum class Format {
        TEXT,  // for people: aligned
        JSON,  // for programs: one object a line
    };

    // How the text looks.
    struct Look {
        bool color = false;    // with a terminal's colours
        bool commands = true;  // with the script's lines
    };
    using Sink = std::function<void(const Json& event)>;

    // Each event goes to sink, one at a time.
    explicit Timeline(Sink eventSink) : sink(std::move(eventSink)) {}
    // Each event is written to output, which stays the caller's and outlives the timeline.
    Timeline(std::ostream& output, Format format, Look look = {false, true});

    // event is an object with the key "event". In JSON the time is the key "ms", in whole milliseconds.
    void report(Json event) PLATFORM_EXCLUDES(mutex);

    // Nothing that is reported from now on is handed on.
    void close() PLATFORM_EXCLUDES(mutex);

private:
    platform::Mutex mutex;  // one event after another
    const Sink sink PLATFORM_GUARDED_BY(mutex);
    bool closed PLATFORM_GUARDED_BY(mutex) = false;
};

}  // namespace simulator
