// Shows a session while it runs.
#pragma once

#include <mutex>
#include <ostream>

#include "simulator/script/Event.h"

namespace simulator {

// Writes every event at once, in the order in which report() is called. Any thread may call it.
class Timeline {
public:
    enum class Format {
        TEXT,  // for people: aligned
        JSON,  // for programs: one object a line
    };

    // stream stays the caller's and outlives the timeline.
    Timeline(std::ostream& output, Format outputFormat) : stream(output), format(outputFormat) {}

    void report(const Json& event);

private:
    std::mutex mutex;  // one event after another
    std::ostream& stream;
    const Format format;
};

}  // namespace simulator
