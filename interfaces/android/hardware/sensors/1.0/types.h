// SPDX-License-Identifier: Apache-2.0
// Records of the platform's sensors.
#pragma once

#include <cstdint>

namespace android::hardware::sensors::V1_0 {

enum class SensorType : int32_t {
    LIGHT = 5,
};

struct SensorInfo {
    int32_t sensorHandle;
};

union EventPayload {
    float scalar;  // for a light sensor: illuminance in lux
    float data[16];
};

struct Event {
    int64_t timestamp;  // nanoseconds on the monotonic clock
    int32_t sensorHandle;
    SensorType sensorType;
    EventPayload u;
};

}  // namespace android::hardware::sensors::V1_0
