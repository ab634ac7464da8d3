// SPDX-License-Identifier: Apache-2.0
#include "tools/session/DataFolder.h"

namespace simulator {

std::filesystem::path dataFolder() {
    const auto bin = std::filesystem::read_symlink("/proc/self/exe").parent_path();
    return bin.parent_path() / DISPLAY_CONTROL_SHARE / "data";
}

}  // namespace simulator
