// SPDX-License-Identifier: Apache-2.0
// What is compared of two sessions.
#pragma once

#include <cstdint>
#include <vector>

#include "tools/session/ScriptFile.h"

namespace simulator {

// The same on every machine: no path of it, no line of the log.
struct SessionDump {
    struct Call {
        int64_t ms;
        ComposerCall call;
    };
    std::vector<Call> calls;
    State state;  // at the end
};

// Runs the script; its pictures are not written. Throws what ScriptFile::run throws.
SessionDump dumpOf(const ScriptFile& script, SessionOptions options);

}  // namespace simulator
