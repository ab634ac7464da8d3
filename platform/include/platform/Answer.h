// Answers that do not matter.
#pragma once

#include <hidl/Status.h>

namespace platform {

// For a call whose answer is not examined: a failed transport is the same as an answer that was dropped.
template <typename T>
void dropAnswer(const ::android::hardware::Return<T>& answer) {
    static_cast<void>(answer.isOk());
}

}  // namespace platform
