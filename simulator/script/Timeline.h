// Shows a session while it runs.
#pragma once

#include <platform/Mutex.h>

#include <ostream>

#include "simulator/script/Event.h"

namespace simulator {

// Writes every event at once, in the order in which report() is called, with the time of the process's clock. Any
// thread may call it.
class Timeline {
public:
    enum class Format {
        TEXT,  // for people: aligned
        JSON,  // for programs: one object a line
    };

    // stream stays the caller's and outlives the timeline.
    Timeline(std::ostream& output, Format outputFormat) : stream(output), format(outputFormat) {}

    // event is an object with the key "event". In JSON the time is the key "ms", in whole milliseconds.
    void report(Json event) EXCLUDES(mutex);

    // Nothing that is reported from now on is written.
    void close() EXCLUDES(mutex);

private:
    platform::Mutex mutex;  // one event after another
    std::ostream& stream GUARDED_BY(mutex);
    const Format format;
    bool closed GUARDED_BY(mutex) = false;
    bool lastWasRemark GUARDED_BY(mutex) = false;  // lines of comment stand together
};

}  // namespace simulator
