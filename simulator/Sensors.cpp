// SPDX-License-Identifier: Apache-2.0
#include "simulator/Sensors.h"

#include <platform/Answer.h>
#include <platform/Clock.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <utility>

namespace simulator {

namespace {

using ::android::sp;
using namespace std::chrono_literals;

constexpr int32_t kLightSensor = 1;  // its handle
constexpr auto kFirstEvent = 100ms;

sensors::Event lightEvent(float lux) {
    sensors::Event event{};
    event.timestamp = platform::clock().now().count();
    event.sensorHandle = kLightSensor;
    event.sensorType = sensors::SensorType::LIGHT;
    event.u.scalar = lux;
    return event;
}

}  // namespace

// Runs its delivery thread from enableSensor to disableSensor or to its own end.
class Sensors::Queue final : public sensorservice::IEventQueue {
public:
    Queue(const sp<Sensors>& owner, sp<sensorservice::IEventQueueCallback> target)
        : service(owner), callback(std::move(target)) {}
    ~Queue() override {
        disable();
        service->journal->add(SensorCall{SensorOperation::RELEASE_QUEUE, {}});
    }

    Return<Result> enableSensor(int32_t sensorHandle, int32_t samplingPeriodUs, int64_t latencyUs) override {
        const bool isValid = sensorHandle == kLightSensor && samplingPeriodUs > 0;
        return returnOf<Result>(service->call(SensorOperation::ENABLE_SENSOR, CallKind::SETTER,
                                              {sensorHandle, samplingPeriodUs, latencyUs},
                                              isValid ? Result::OK : Result::BAD_VALUE, [&](Result) {
                                                  if (isValid) enable(std::chrono::microseconds(samplingPeriodUs));
                                              }));
    }

    Return<Result> disableSensor(int32_t sensorHandle) override {
        const bool isValid = sensorHandle == kLightSensor;
        return returnOf<Result>(service->call(SensorOperation::DISABLE_SENSOR, CallKind::SETTER, {sensorHandle},
                                              isValid ? Result::OK : Result::BAD_VALUE, [&](Result) {
                                                  if (isValid) disable();
                                              }));
    }

    // Without a thread nothing is delivered.
    void startDelivery() {
        if (delivery != nullptr) return;
        setStopping(false);
        delivery = platform::clock().startThread([this] { deliver(); });
    }

private:
    void enable(platform::Clock::Duration samplingPeriod) {
        period = samplingPeriod;
        {
            const platform::Lock lock(service->mutex);
            service->queues.push_back(this);
        }
        if (service->delivering) startDelivery();
    }

    void disable() {
        {
            const platform::Lock lock(service->mutex);
            auto& enabled = service->queues;
            enabled.erase(std::remove(enabled.begin(), enabled.end(), this), enabled.end());
        }
        if (delivery == nullptr) return;
        setStopping(true);
        platform::clock().join(*delivery);
        delivery.reset();
    }

    void deliver() {
        platform::Clock::Duration next = platform::clock().now() + kFirstEvent;
        while (waitUntil(next)) {
            if (service->delivering) platform::dropAnswer(callback->onEvent(lightEvent(service->lux)));
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

    void setStopping(bool stop) PLATFORM_EXCLUDES(mutex) {
        const platform::Lock lock(mutex);
        stopping = stop;
        changed.notifyOne();
    }

    const sp<Sensors> service;
    const sp<sensorservice::IEventQueueCallback> callback;
    platform::Clock::Duration period{0};
    std::unique_ptr<platform::Thread> delivery;
    platform::Mutex mutex;
    platform::Condition changed;
    bool stopping PLATFORM_GUARDED_BY(mutex) = false;
};

Sensors::Sensors(std::shared_ptr<Journal> events) : Faults(Result::INVALID_OPERATION), journal(std::move(events)) {}

void Sensors::setDelivering(bool on) {
    delivering = on;
    if (!on) return;
    const platform::Lock lock(mutex);
    for (Queue* const queue : queues) queue->startDelivery();
}

void Sensors::deliver(float level) {
    deliver(lightEvent(level));
}

void Sensors::deliver(const sensors::Event& event) {
    sp<sensorservice::IEventQueueCallback> callback;
    {
        const platform::Lock lock(mutex);
        callback = lastCallback;
    }
    if (callback != nullptr) platform::dropAnswer(callback->onEvent(event));
}

template <typename CarryOut>
Outcome Sensors::call(SensorOperation operation, CallKind kind, std::vector<int64_t> arguments, Result result,
                      CarryOut carryOut) {
    const Failure failure = begin(operation, kind);
    const Outcome outcome = outcomeOf(failure, result);
    journal->add(SensorCall{operation, std::move(arguments), outcome});
    if (hasEffect(kind, failure)) carryOut(static_cast<Result>(outcome.result));
    return outcome;
}

Sensors::Return<void> Sensors::getDefaultSensor(sensors::SensorType type,
                                                std::function<void(const sensors::SensorInfo&, Result)> callback) {
    const Result known = type == sensors::SensorType::LIGHT ? Result::OK : Result::NOT_EXIST;
    return returnVoid(call(SensorOperation::GET_DEFAULT_SENSOR, CallKind::GETTER, {static_cast<int32_t>(type)}, known,
                           [&](Result result) { callback({kLightSensor}, result); }));
}

Sensors::Return<void> Sensors::createEventQueue(
    const sp<sensorservice::IEventQueueCallback>& eventCallback,
    std::function<void(const sp<sensorservice::IEventQueue>&, Result)> callback) {
    {
        const platform::Lock lock(mutex);
        lastCallback = eventCallback;
    }
    return returnVoid(call(SensorOperation::CREATE_EVENT_QUEUE, CallKind::GETTER, {}, Result::OK, [&](Result result) {
        const bool hasQueue = result == Result::OK && !withoutQueue;
        callback(hasQueue ? sp<sensorservice::IEventQueue>(new Queue(this, eventCallback)) : nullptr, result);
    }));
}

}  // namespace simulator
