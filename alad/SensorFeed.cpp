// SPDX-License-Identifier: Apache-2.0
#include "alad/SensorFeed.h"

namespace vendor::kov::hardware::display_control::V1_0::implementation {

namespace {

namespace sensors = ::android::hardware::sensors::V1_0;
using ::android::sp;
using sensorservice::Result;

bool isOk(::android::hardware::Return<Result> answer) {
    return answer.withDefault(Result::UNKNOWN_ERROR) == Result::OK;
}

}  // namespace

bool findLightSensor(sensorservice::ISensorManager& manager, int32_t& sensorHandle) {
    Result result = Result::UNKNOWN_ERROR;
    const auto status =
        manager.getDefaultSensor(sensors::SensorType::LIGHT, [&](const sensors::SensorInfo& info, Result delivered) {
            result = delivered;
            sensorHandle = info.sensorHandle;
        });
    return status.isOk() && result == Result::OK;
}

bool createQueue(sensorservice::ISensorManager& manager, const sp<sensorservice::IEventQueueCallback>& callback,
                 sp<sensorservice::IEventQueue>& queue) {
    Result result = Result::UNKNOWN_ERROR;
    const auto status =
        manager.createEventQueue(callback, [&](const sp<sensorservice::IEventQueue>& made, Result delivered) {
            result = delivered;
            queue = made;
        });
    return status.isOk() && result == Result::OK && queue != nullptr;
}

bool switchSensorOn(sensorservice::IEventQueue& queue, int32_t sensorHandle) {
    constexpr int32_t kSamplingPeriodUs = 1'000'000;
    return isOk(queue.enableSensor(sensorHandle, kSamplingPeriodUs, /*maxBatchReportLatencyUs=*/0));
}

bool switchSensorOff(sensorservice::IEventQueue& queue, int32_t sensorHandle) {
    return isOk(queue.disableSensor(sensorHandle));
}

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
