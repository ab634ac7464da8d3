#include "simulator/SimulatedSensors.h"

#include <platform/Answer.h>
#include <platform/Clock.h>

#include <chrono>
#include <utility>

namespace simulator {

namespace {

namespace sensors = ::android::hardware::sensors::V1_0;
using ::android::sp;
using ::android::hardware::Void;
using namespace std::chrono_literals;

constexpr int32_t kLightSensor = 1;  // its handle
constexpr auto kFirstEvent = 100ms;

}  // namespace

// Runs its delivery thread from enableSensor to disableSensor or to its own end.
class SimulatedSensors::Queue final : public sensorservice::IEventQueue {
public:
    Queue(std::shared_ptr<const State> state, sp<sensorservice::IEventQueueCallback> target)
        : shared(std::move(state)), callback(std::move(target)) {}
    ~Queue() override { stopDelivery(); }

    Return<Result> enableSensor(int32_t sensorHandle, int32_t samplingPeriodUs, int64_t /*latency*/) override {
        if (sensorHandle != kLightSensor || samplingPeriodUs <= 0) return Result::BAD_VALUE;
        const Result result = shared->resultOf(SensorStep::ENABLE);
        if (result != Result::OK || delivery != nullptr) return result;
        return startDelivery(std::chrono::microseconds(samplingPeriodUs)) ? Result::OK : Result::NO_MEMORY;
    }

    Return<Result> disableSensor(int32_t sensorHandle) override {
        if (sensorHandle != kLightSensor) return Result::BAD_VALUE;
        const Result result = shared->resultOf(SensorStep::DISABLE);
        if (result == Result::OK) stopDelivery();
        return result;
    }

private:
    // False when there is no thread for it.
    bool startDelivery(platform::Clock::Duration period) {
        setStopping(false);
        delivery = platform::clock().startThread([this, period] { deliver(period); });
        return delivery != nullptr;
    }

    void deliver(platform::Clock::Duration period) {
        platform::Clock::Duration next = platform::clock().now() + kFirstEvent;
        while (waitUntil(next)) {
            sensors::Event event{};
            event.timestamp = platform::clock().now().count();
            event.sensorHandle = kLightSensor;
            event.sensorType = sensors::SensorType::LIGHT;
            event.u.scalar = shared->lux;
            if (shared->delivering) platform::dropAnswer(callback->onEvent(event));
            next += period;
        }
    }

    // False when delivery is to stop.
    bool waitUntil(platform::Clock::Duration deadline) PLATFORM_EXCLUDES(mutex) {
        platform::Lock lock(mutex);
        while (!stopping && platform::clock().now() < deadline) {
            platform::clock().waitUntil(changed, lock, deadline);
        }
        return !stopping;
    }

    void stopDelivery() PLATFORM_EXCLUDES(mutex) {
        if (delivery == nullptr) return;
        setStopping(true);
        platform::clock().join(*delivery);
        delivery.reset();
    }

    void setStopping(bool stop) PLATFORM_EXCLUDES(mutex) {
        const platform::Lock lock(mutex);
        stopping = stop;
        changed.notifyOne();
    }

    const std::shared_ptr<const State> shared;
    const sp<sensorservice::IEventQueueCallback> callback;
    std::unique_ptr<platform::Thread> delivery;
    platform::Mutex mutex;
    platform::Condition changed;
    bool stopping PLATFORM_GUARDED_BY(mutex) = false;
};

SimulatedSensors::Return<void> SimulatedSensors::getDefaultSensor(
    sensors::SensorType type, std::function<void(const sensors::SensorInfo&, Result)> callback) {
    const bool known = type == sensors::SensorType::LIGHT;
    callback({kLightSensor}, known ? shared->resultOf(SensorStep::FIND) : Result::NOT_EXIST);
    return Void();
}

SimulatedSensors::Return<void> SimulatedSensors::createEventQueue(
    const sp<sensorservice::IEventQueueCallback>& eventCallback,
    std::function<void(const sp<sensorservice::IEventQueue>&, Result)> callback) {
    const Result result = shared->resultOf(SensorStep::QUEUE);
    const sp<sensorservice::IEventQueue> queue =
        result == Result::OK ? sp<sensorservice::IEventQueue>(new Queue(shared, eventCallback)) : nullptr;
    callback(queue, result);
    return Void();
}

}  // namespace simulator
