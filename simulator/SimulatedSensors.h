// The sensor service of the simulated phone: a light sensor.
#pragma once

#include <android/frameworks/sensorservice/1.0/ISensorManager.h>
#include <platform/Mutex.h>

#include <array>
#include <atomic>
#include <string_view>

namespace simulator {

namespace sensorservice = ::android::frameworks::sensorservice::V1_0;

// The steps of using a light sensor, each of which can be refused.
enum class SensorStep { NONE, FIND, QUEUE, ENABLE, DISABLE };

// Has one light sensor. While a queue has it enabled, the queue delivers the light that falls on it once every sampling
// period, on a thread of its own that runs by the process's clock; the first event comes a tenth of a second after the
// sensor was switched on. The setters may be called at any time by the thread that steps the clock.
class SimulatedSensors final : public sensorservice::ISensorManager {
public:
    // Light that falls on the sensor, in lux.
    void setLight(float lux) { shared->lux = lux; }
    // Whether enabled queues deliver; they do at first.
    void setDelivering(bool delivering) { shared->delivering = delivering; }
    // The step that is refused from now on.
    void refuse(SensorStep step) { shared->refused = step; }

    template <typename T>
    using Return = ::android::hardware::Return<T>;
    using Result = sensorservice::Result;

    Return<void> getDefaultSensor(
        ::android::hardware::sensors::V1_0::SensorType type,
        std::function<void(const ::android::hardware::sensors::V1_0::SensorInfo&, Result)> callback) override;
    Return<void> createEventQueue(
        const ::android::sp<sensorservice::IEventQueueCallback>& eventCallback,
        std::function<void(const ::android::sp<sensorservice::IEventQueue>&, Result)> callback) override;

private:
    class Queue;

    // What the service and its queues, which may outlive it, have in common.
    struct State {
        std::atomic<float> lux{0.0F};
        std::atomic<bool> delivering{true};
        std::atomic<SensorStep> refused{SensorStep::NONE};

        Result resultOf(SensorStep step) const { return refused == step ? Result::INVALID_OPERATION : Result::OK; }
    };
    const std::shared_ptr<State> shared = std::make_shared<State>();
};

}  // namespace simulator
