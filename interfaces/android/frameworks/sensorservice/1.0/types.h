// SPDX-License-Identifier: Apache-2.0
// Results of the sensor service.
#pragma once

#include <cstdint>

namespace android::frameworks::sensorservice::V1_0 {

enum class Result : int32_t {
    OK = 0,
    NOT_EXIST,
    NO_MEMORY,
    NO_INIT,
    PERMISSION_DENIED,
    BAD_VALUE,
    INVALID_OPERATION,
    UNKNOWN_ERROR,
};

}  // namespace android::frameworks::sensorservice::V1_0
