// What the program may do on the terminal that it writes to.
#pragma once

namespace dcsim {

// Whether text for this descriptor may be coloured: it is a terminal, and NO_COLOR is not set or empty.
bool useColor(int fd);

}  // namespace dcsim
