// SPDX-License-Identifier: Apache-2.0
// A session's events as JSON.
#pragma once

#include "tools/json/Json.h"
#include "tools/session/SessionEvent.h"

namespace simulator {

// An object by the entries' names.
Json stateToJson(const State& state);

// An object with the keys "event" and, at the end, "ms". Null for LineDone.
Json sessionEventToJson(const SessionEvent& event);

}  // namespace simulator
