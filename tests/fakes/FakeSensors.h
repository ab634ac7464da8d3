// The phone's sensor service as the tests have it.
#pragma once

#include <android/frameworks/sensorservice/1.0/ISensorManager.h>

#include <functional>
#include <mutex>
#include <string>

#include "tests/fakes/Faults.h"

namespace fakes {

namespace sensorservice = ::android::frameworks::sensorservice::V1_0;
namespace sensors = ::android::hardware::sensors::V1_0;

// One light sensor with the handle 3. Journals every call and the end of every queue, and keeps the callback that it
// was given last, also when it refuses and after the queue's end. Any thread may deliver events.
class FakeSensors : public sensorservice::ISensorManager, public FaultyService<sensorservice::Result> {
public:
    using Callback = ::android::sp<sensorservice::IEventQueueCallback>;
    using Result = sensorservice::Result;
    template <typename T>
    using Return = ::android::hardware::Return<T>;

    FakeSensors() : FaultyService("sensors") {}

    bool withoutQueue = false;               // answers OK without a queue
    std::function<void()> atEnable = [] {};  // called while the sensor is switched on

    // One event of that light to the callback, if there is one; its other fields are odd ones.
    void light(float lux) { deliver(callback(), lux); }
    static void deliver(const Callback& callback, float lux) {
        sensors::Event event{-1, 99, static_cast<sensors::SensorType>(99), {}};
        event.u.scalar = lux;
        if (callback != nullptr) callback->onEvent(event).isOk();
    }
    Callback callback() {
        const std::lock_guard guard(mutex);
        return latest;
    }
    void keep(const Callback& callback) {
        const std::lock_guard guard(mutex);
        latest = callback;
    }

    Return<void> getDefaultSensor(sensors::SensorType type,
                                  std::function<void(const sensors::SensorInfo&, Result)> callback) override {
        return answer("getDefaultSensor(" + std::to_string(static_cast<int32_t>(type)) + ")",
                      [callback](Result result) { callback({3}, result); });
    }
    Return<void> createEventQueue(
        const Callback& eventCallback,
        std::function<void(const ::android::sp<sensorservice::IEventQueue>&, Result)> callback) override {
        keep(eventCallback);
        const ::android::sp<sensorservice::IEventQueue> queue(withoutQueue ? nullptr : new Queue(this));
        return answer("createEventQueue()", [callback, queue](Result result) { callback(queue, result); });
    }

private:
    struct Queue : sensorservice::IEventQueue {
        explicit Queue(FakeSensors* service) : sensors(service) {}
        ~Queue() override { journal::add("sensors queue gone"); }

        Return<Result> enableSensor(int32_t handle, int32_t periodUs, int64_t latencyUs) override {
            sensors->atEnable();
            return sensors->answer("enableSensor(" + std::to_string(handle) + ", " + std::to_string(periodUs) + ", " +
                                   std::to_string(latencyUs) + ")");
        }
        Return<Result> disableSensor(int32_t handle) override {
            return sensors->answer("disableSensor(" + std::to_string(handle) + ")");
        }

        const ::android::sp<FakeSensors> sensors;
    };

    std::mutex mutex;  // guards latest
    Callback latest;
};

}  // namespace fakes
