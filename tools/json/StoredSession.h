// SPDX-License-Identifier: Apache-2.0
// A session's dump as a file, to compare later sessions with.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "tools/json/Json.h"
#include "tools/session/ScriptFile.h"

namespace simulator {

// An object of "calls" and "state". A tone curve of the simulated library is named by its level.
Json toJson(const SessionDump& dump);

// The first place where two dumps differ. Floats are the same when their bits are.
struct Difference {
    std::string path;              // JSON pointer
    std::optional<Json> expected;  // nothing where the dump has no such value
    std::optional<Json> got;
    std::optional<size_t> call = {};  // number of the composer call that differs, from 1; nothing in the state
};
std::optional<Difference> firstDifference(const Json& expected, const Json& got);
// What verify says of a dump without a difference, as an event of that name.
Json verdictToJson(const char* event, const SessionDump& dump);
// As an event; got is the session that differs.
Json toJson(const Difference& difference, const SessionDump& got);

// Throws std::runtime_error when the file cannot be read or holds no dump.
Json readDump(const std::filesystem::path& file);

// One line a call and a value. The file is replaced as a whole or stays as it is; throws std::runtime_error when it
// cannot be written.
void writeDump(const Json& dump, const std::filesystem::path& file);

}  // namespace simulator
