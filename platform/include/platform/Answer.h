// SPDX-License-Identifier: Apache-2.0
// Answers of services that do not matter.
#pragma once

#include <hidl/Status.h>

namespace platform {

// For a call whose answer is not examined. Looks at the transport status, so that a failure does not end the process.
template <typename T>
void dropAnswer(const ::android::hardware::Return<T>& answer) {
    static_cast<void>(answer.isOk());
}

}  // namespace platform
