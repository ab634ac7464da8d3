// SPDX-License-Identifier: Apache-2.0
// A session's events as JSON.
#pragma once

#include <ostream>

#include "tools/json/Json.h"
#include "tools/session/Timeline.h"

namespace simulator {

// An object by the entries' names.
Json stateToJson(const State& state);

// Writes each event to output as an object on one line, with the keys "event" and, at the end, "ms"; calls of the
// closed libraries only with all.
Timeline::Sink jsonWriter(std::ostream& output, bool all);

}  // namespace simulator
