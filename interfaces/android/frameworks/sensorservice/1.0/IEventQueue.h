// SPDX-License-Identifier: Apache-2.0
// A queue of sensor events.
#pragma once

#include <android/frameworks/sensorservice/1.0/types.h>
#include <android/hidl/base/1.0/IBase.h>
#include <hidl/Status.h>

namespace android::frameworks::sensorservice::V1_0 {

// Holds a reference to its callback until it is destroyed.
struct IEventQueue : public ::android::hidl::base::V1_0::IBase {
    // Sampling period and largest report latency in microseconds.
    virtual ::android::hardware::Return<Result> enableSensor(int32_t sensorHandle, int32_t samplingPeriodUs,
                                                             int64_t maxBatchReportLatencyUs) = 0;
    virtual ::android::hardware::Return<Result> disableSensor(int32_t sensorHandle) = 0;
};

}  // namespace android::frameworks::sensorservice::V1_0
