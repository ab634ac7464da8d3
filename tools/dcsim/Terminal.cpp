// SPDX-License-Identifier: Apache-2.0
#include "tools/dcsim/Terminal.h"

#include <unistd.h>

#include <cstdlib>
#include <string_view>

namespace dcsim {

namespace {

// No thread of the program changes its environment.
std::string_view variable(const char* name) {
    const char* const value = getenv(name);  // NOLINT(concurrency-mt-unsafe)
    return value == nullptr ? "" : value;
}

}  // namespace

bool useColor(int descriptor) {
    return isatty(descriptor) == 1 && variable("NO_COLOR").empty() && variable("TERM") != "dumb";
}

}  // namespace dcsim
