// SPDX-License-Identifier: Apache-2.0
// The composer's calls in a session and the state at its end, as a file to compare later sessions with.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "tools/json/Json.h"
#include "tools/session/ScriptFile.h"

namespace simulator {

// An object of "calls", the composer's calls in their order, and "state", what `show` gives at the end. The same on
// every machine: no path of it, no line of the log. A tone curve of the simulated library is named by
// its level. Pictures of the script are not written. Throws what ScriptFile::run throws.
Json dumpOf(ScriptFile& script, SessionOptions options);

// The first place where two dumps differ. Floats are the same when their bits are.
struct Difference {
    std::string path;              // JSON pointer
    std::optional<Json> expected;  // nothing where the dump has no such value
    std::optional<Json> got;
    std::optional<size_t> call = {};  // number of the composer call that differs, from 1; nothing in the state
};
std::optional<Difference> firstDifference(const Json& expected, const Json& got);

// Throws std::runtime_error when the file cannot be read or holds no dump.
Json readDump(const std::filesystem::path& file);

// One line a call and a value. The file is replaced as a whole or stays as it is; throws std::runtime_error when it
// cannot be written.
void writeDump(const Json& dump, const std::filesystem::path& file);

}  // namespace simulator
