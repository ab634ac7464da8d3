// SPDX-License-Identifier: Apache-2.0
// What must hold for any input.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <string>

namespace fuzz {

// Ends the process, which the fuzzer reports as a crash, if it does not hold.
inline void require(bool holds, const std::string& what) {
    if (holds) return;
    fprintf(stderr, "does not hold: %s\n", what.c_str());
    abort();
}

}  // namespace fuzz
