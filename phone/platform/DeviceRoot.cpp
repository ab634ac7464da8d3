// SPDX-License-Identifier: Apache-2.0
// Device files on the phone: the paths as written, and no observer.
#include <platform/DeviceFiles.h>

#include "platform/src/DeviceNodes.h"

namespace platform {

std::string devicePath(std::string_view absolutePath) {
    return std::string(absolutePath);
}

void reportNodeWrite(std::string_view /*absolutePath*/, std::string_view /*bytes*/) {}

}  // namespace platform
