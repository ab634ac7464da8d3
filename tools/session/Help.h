// SPDX-License-Identifier: Apache-2.0
// What the script language says of itself.
#pragma once

#include <string>

#include "tools/session/Command.h"

namespace simulator {

// The commands' names by their groups, each at most 80 columns wide.
std::string helpOf(const std::vector<Command>& table);

// How a command is used, what it does, and which values each of its arguments takes.
std::string helpOf(const Command& command);

}  // namespace simulator
