// SPDX-License-Identifier: Apache-2.0
// The sensor service of the simulated phone: a light sensor.
#pragma once

#include <android/frameworks/sensorservice/1.0/ISensorManager.h>
#include <platform/Mutex.h>

#include <atomic>
#include <memory>

#include "simulator/Faults.h"
#include "simulator/Journal.h"

namespace simulator {

namespace sensors = ::android::hardware::sensors::V1_0;

// Has one light sensor, with the handle 1. While a queue has it enabled, the queue delivers the light on it once every
// sampling period, on its own thread that runs by the process's clock; the first event comes a tenth of a second after
// the sensor was enabled. Without light() that is 0 lux. A refused call answers INVALID_OPERATION unless refuseWith
// says otherwise; no queue is created then. Settings are made by the thread that steps the clock, at any time.
class Sensors final : public sensorservice::ISensorManager, public Faults<SensorOperation, sensorservice::Result> {
public:
    explicit Sensors(std::shared_ptr<Journal> events);

    // The light on the sensor, in lux, which the next periodic event brings.
    void light(float level) { lux = level; }
    // Whether enabled queues deliver periodically. They do unless it is set; where it is not wanted at all, no thread
    // is started when it is set before the sensor is enabled.
    void setDelivering(bool delivering);
    // createEventQueue answers OK and null.
    void setWithoutQueue(bool without) { withoutQueue = without; }

    // An event now, on the calling thread, to the callback that createEventQueue was last given; also when that queue
    // was refused, is not enabled or has been released, as an event that was on its way. Nothing without a callback.
    void deliver(float level);
    void deliver(const sensors::Event& event);

    template <typename T>
    using Return = ::android::hardware::Return<T>;
    using Result = sensorservice::Result;

    Return<void> getDefaultSensor(sensors::SensorType type,
                                  std::function<void(const sensors::SensorInfo&, Result)> callback) override;
    Return<void> createEventQueue(
        const ::android::sp<sensorservice::IEventQueueCallback>& eventCallback,
        std::function<void(const ::android::sp<sensorservice::IEventQueue>&, Result)> callback) override;

private:
    class Queue;

    // Adds the call to the journal and, unless it fails without an effect, carries it out.
    template <typename CarryOut>
    Outcome call(SensorOperation operation, CallKind kind, std::vector<int64_t> arguments, Result result,
                 CarryOut carryOut);

    const std::shared_ptr<Journal> journal;
    std::atomic<float> lux{0.0F};
    std::atomic<bool> delivering{true};
    std::atomic<bool> withoutQueue{false};
    platform::Mutex mutex;
    ::android::sp<sensorservice::IEventQueueCallback> lastCallback PLATFORM_GUARDED_BY(mutex);
    std::vector<Queue*> queues PLATFORM_GUARDED_BY(mutex);  // that have the sensor enabled
};

}  // namespace simulator
