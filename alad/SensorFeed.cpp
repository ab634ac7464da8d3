#include "alad/SensorFeed.h"

#include <memory>
#include <utility>

namespace vendor::kov::hardware::display_control::V1_0::implementation {

namespace {

namespace sensors = ::android::hardware::sensors::V1_0;
using ::android::sp;
using sensorservice::Result;

constexpr int32_t kSamplingPeriodUs = 1'000'000;

// Shared with the service's callbacks, for they may come late.
template <typename T>
struct Answer {
    Result result = Result::UNKNOWN_ERROR;
    T value{};
};

bool isOk(::android::hardware::Return<Result> answer) {
    return answer.withDefault(Result::UNKNOWN_ERROR) == Result::OK;
}

}  // namespace

bool findLightSensor(sensorservice::ISensorManager& manager, int32_t& sensorHandle) {
    const auto answer = std::make_shared<Answer<int32_t>>();
    const auto status =
        manager.getDefaultSensor(sensors::SensorType::LIGHT, [answer](const sensors::SensorInfo& info, Result result) {
            *answer = {result, info.sensorHandle};
        });
    if (!status.isOk() || answer->result != Result::OK) return false;
    sensorHandle = answer->value;
    return true;
}

sp<sensorservice::IEventQueue> createQueue(sensorservice::ISensorManager& manager,
                                           const sp<sensorservice::IEventQueueCallback>& callback) {
    const auto answer = std::make_shared<Answer<sp<sensorservice::IEventQueue>>>();
    const auto status =
        manager.createEventQueue(callback, [answer](const sp<sensorservice::IEventQueue>& queue, Result result) {
            *answer = {result, queue};
        });
    if (!status.isOk() || answer->result != Result::OK) return nullptr;
    return std::exchange(answer->value, nullptr);
}

bool switchSensorOn(sensorservice::IEventQueue& queue, int32_t sensorHandle) {
    return isOk(queue.enableSensor(sensorHandle, kSamplingPeriodUs, /*maxBatchReportLatencyUs=*/0));
}

bool switchSensorOff(sensorservice::IEventQueue& queue, int32_t sensorHandle) {
    return isOk(queue.disableSensor(sensorHandle));
}

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
