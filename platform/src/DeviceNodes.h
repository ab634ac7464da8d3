// SPDX-License-Identifier: Apache-2.0
// Node access: the part that differs between host and phone.
#pragma once

#include <string_view>

namespace platform {

// Reports a node write to the observer on the host; does nothing on the phone.
void reportNodeWrite(std::string_view absolutePath, std::string_view bytes);

}  // namespace platform
