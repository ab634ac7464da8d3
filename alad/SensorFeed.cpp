#include "alad/SensorFeed.h"

#include <platform/Answer.h>

#include <memory>

namespace vendor::kov::hardware::display_control::V1_0::implementation {

namespace {

namespace sensors = ::android::hardware::sensors::V1_0;
using ::android::sp;
using sensorservice::Result;

constexpr int32_t kSamplingPeriodUs = 1'000'000;

template <typename T>
struct Delivery {
    Result result = Result::UNKNOWN_ERROR;
    T value{};
};

bool isOk(::android::hardware::Return<Result> answer) {
    return answer.withDefault(Result::UNKNOWN_ERROR) == Result::OK;
}

}  // namespace

bool findLightSensor(sensorservice::ISensorManager& manager, int32_t& sensorHandle) {
    const auto answer = std::make_shared<platform::Answer<Delivery<int32_t>>>();
    const auto status =
        manager.getDefaultSensor(sensors::SensorType::LIGHT, [answer](const sensors::SensorInfo& info, Result result) {
            answer->deliver({result, info.sensorHandle});
        });
    const Delivery<int32_t> delivery = answer->take();
    if (!status.isOk() || delivery.result != Result::OK) return false;
    sensorHandle = delivery.value;
    return true;
}

bool createQueue(sensorservice::ISensorManager& manager, const sp<sensorservice::IEventQueueCallback>& callback,
                 sp<sensorservice::IEventQueue>& queue) {
    using Queue = sp<sensorservice::IEventQueue>;
    const auto answer = std::make_shared<platform::Answer<Delivery<Queue>>>();
    const auto status = manager.createEventQueue(callback, [answer](const Queue& made, Result result) {
        answer->deliver({result, made});
    });
    const Delivery<Queue> delivery = answer->take();
    queue = delivery.value;
    return status.isOk() && delivery.result == Result::OK && queue != nullptr;
}

bool switchSensorOn(sensorservice::IEventQueue& queue, int32_t sensorHandle) {
    return isOk(queue.enableSensor(sensorHandle, kSamplingPeriodUs, /*maxBatchReportLatencyUs=*/0));
}

bool switchSensorOff(sensorservice::IEventQueue& queue, int32_t sensorHandle) {
    return isOk(queue.disableSensor(sensorHandle));
}

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
