// SPDX-License-Identifier: Apache-2.0
// What may stand at the end of a line that somebody is typing.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "tools/session/Command.h"

namespace simulator {

struct CompletionContext {
    const std::vector<Command>& table;  // the commands that there are
    uint64_t displays = 0;              // how many the composer has now
};

// The last word of a line: what completion replaces. Empty behind a blank.
std::string_view lastWordOf(std::string_view lineUpToCursor);

// The words that the last word of the line may become, sorted: command names, and for an argument its words, the
// composer's displays or the names of files, those of folders with '/' at the end. Empty where anything may stand.
std::vector<std::string> completionsOf(std::string_view lineUpToCursor, const CompletionContext& context);

}  // namespace simulator
