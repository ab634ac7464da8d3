// SPDX-License-Identifier: Apache-2.0
// Receiver of sensor events.
#pragma once

#include <android/hardware/sensors/1.0/types.h>
#include <android/hidl/base/1.0/IBase.h>
#include <hidl/Status.h>

namespace android::frameworks::sensorservice::V1_0 {

struct IEventQueueCallback : public ::android::hidl::base::V1_0::IBase {
    // Called on a thread of the sensor service.
    virtual ::android::hardware::Return<void> onEvent(const ::android::hardware::sensors::V1_0::Event& event) = 0;
};

}  // namespace android::frameworks::sensorservice::V1_0
