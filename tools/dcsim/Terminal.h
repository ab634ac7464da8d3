// SPDX-License-Identifier: Apache-2.0
// What the program may do on the terminal that it writes to.
#pragma once

namespace dcsim {

// Whether text on the descriptor may be coloured: it is a terminal that knows colours, and NO_COLOR is not set
// (no-color.org: a variable that is there and not empty).
bool useColor(int descriptor);

}  // namespace dcsim
