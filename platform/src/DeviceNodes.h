// What node access asks of the place it runs in.
#pragma once

#include <string_view>

namespace platform {

// A node was written: tells the observer at a desk, nobody on the phone.
void reportNodeWrite(std::string_view absolutePath, std::string_view bytes);

}  // namespace platform
