// What the program may do on the terminal that it writes to.
#pragma once

#include <string>
#include <string_view>

namespace dcsim {

// Whether text on the descriptor may be coloured: it is a terminal that knows colours, and NO_COLOR is not set
// (no-color.org: a variable that is there and not empty).
bool useColor(int descriptor);

// Text with names that others chose: control characters, which would steer a terminal, as \x1B; all else, line ends and
// UTF-8 too, as it stands.
std::string harmless(std::string_view text);

}  // namespace dcsim
