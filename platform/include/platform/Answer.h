// SPDX-License-Identifier: Apache-2.0
// Calls whose answer is not examined.
#pragma once

#include <hidl/Status.h>

namespace platform {

// Drops an answer. Examines its transport status, because an unexamined failure ends the process.
template <typename T>
void dropAnswer(const ::android::hardware::Return<T>& answer) {
    static_cast<void>(answer.isOk());
}

}  // namespace platform
