// SPDX-License-Identifier: Apache-2.0
#include "alad/DisplayAlad.h"

#include <closed/alad_algo_publish.h>
#include <platform/Answer.h>
#include <platform/Clock.h>
#include <platform/Log.h>
#include <platform/Numbers.h>

#include <algorithm>
#include <chrono>
#include <cinttypes>
#include <cmath>
#include <utility>

#include "alad/SensorFeed.h"

namespace vendor::kov::hardware::display_control::V1_0::implementation {

namespace {

using ::android::sp;
using ::android::hardware::Return;
using composer_ext::V1_0::AladParamPair;
using composer_ext::V1_0::IComposerExt;
using namespace std::chrono_literals;

constexpr int32_t kIndoorLux = 300;  // light level until the first sensor event
constexpr auto kSamplingPeriod = 1s;
constexpr auto kMessagePause = 20ms;

// Keys of the composer's tone-curve parameters.
constexpr int32_t kModeKey = 0;
constexpr int64_t kModeAmbient = 4;
constexpr int32_t kCurveKey = 14;

constexpr uint32_t kOn = 1;
constexpr uint32_t kOff = 0;

}  // namespace

// Receives sensor events for a controller. The sensor service may keep it after the controller is gone, so events are
// dropped once it is detached. mutex guards owner: detaching and the delivery of an event exclude each other.
class DisplayAlad::SensorCallback final : public sensorservice::IEventQueueCallback {
public:
    explicit SensorCallback(DisplayAlad* controller) : owner(controller) {}

    void detach() PLATFORM_EXCLUDES(mutex) {
        const platform::Lock lock(mutex);
        owner = nullptr;
    }

    // The payload's first float is the light level in lux. Sensor type and handle are not examined.
    Return<void> onEvent(const ::android::hardware::sensors::V1_0::Event& event) override PLATFORM_EXCLUDES(mutex) {
        const platform::Lock lock(mutex);
        if (owner != nullptr) owner->notifyData(platform::toInt32(event.u.scalar));
        return ::android::hardware::Void();
    }

private:
    platform::Mutex mutex;
    DisplayAlad* owner PLATFORM_GUARDED_BY(mutex);
};

DisplayAlad::DisplayAlad(const sp<IComposerExt>& composer) : composerExt(composer) {}

DisplayAlad::~DisplayAlad() = default;

int DisplayAlad::enable() {
    if (enabled) return 0;

    const auto manager = sensorservice::ISensorManager::getService("default", /*getStub=*/false);
    if (manager == nullptr) {
        PLATFORM_LOG_ERROR("ISensorManager getService error");
        return -1;
    }
    int32_t handle = 0;
    if (!findLightSensor(*manager, handle)) {
        PLATFORM_LOG_ERROR("get light Sensor error");
        return -2;
    }
    const sp<SensorCallback> feed(new SensorCallback(this));
    sp<sensorservice::IEventQueue> queue;
    if (!createQueue(*manager, feed, queue)) {
        PLATFORM_LOG_ERROR("createEventQueue error");
        feed->detach();
        return -3;
    }
    notifyData(kIndoorLux);
    if (!switchSensorOn(*queue, handle)) {
        PLATFORM_LOG_ERROR("enableSensor error");
        feed->detach();
        return -4;
    }
    if (!startWorker()) {
        PLATFORM_LOG_ERROR("start worker error");
        switchSensorOff(*queue, handle);
        feed->detach();
        return -5;
    }

    sensorManager = manager;
    eventQueue = queue;
    callback = feed;
    sensorHandle = handle;
    enabled = true;
    return 0;
}

void DisplayAlad::disable() {
    if (!enabled) return;
    if (!switchSensorOff(*eventQueue, sensorHandle)) PLATFORM_LOG_BARE(ANDROID_LOG_ERROR, "disableSensor error");
    callback->detach();
    callback.clear();
    eventQueue.clear();
    sensorManager.clear();
    stopWorker();
    enabled = false;
    platform::dropAnswer(composerExt->setAladParams(0, kOff, {}));
}

// Resets the state that the worker starts from. False if the thread cannot be started.
bool DisplayAlad::startWorker() {
    curveActive = false;
    filter = {};
    {
        const platform::Lock lock(mutex);
        running = true;
    }
    worker = platform::clock().startThread([this] { workThread(); });
    return worker != nullptr;
}

void DisplayAlad::stopWorker() {
    {
        const platform::Lock lock(mutex);
        running = false;
        cond.notifyOne();
    }
    platform::clock().join(*std::exchange(worker, nullptr));
}

void DisplayAlad::notifyData(int32_t newLux) {
    const platform::Lock lock(mutex);
    lux = newLux;
}

double DisplayAlad::nitToGray(double x) {
    constexpr double kExponent = 1 / 2.2;
    return std::pow(x, kExponent);
}

void DisplayAlad::workThread() {
    baseLevel = getAGTMLevel(kIndoorLux);
    while (true) {
        const Wake wake = awaitSample();
        if (wake.stopped) {
            if (wake.waited) PLATFORM_LOG_DEBUG("exit");
            return;
        }
        const int32_t mean = filter.add(wake.lux, curveActive);
        PLATFORM_LOG_DEBUG("avg:%" PRId32 " curr:%" PRId32, mean, wake.lux);
        follow(mean);
    }
}

DisplayAlad::Wake DisplayAlad::awaitSample() {
    platform::Lock lock(mutex);
    if (!running) return {/*stopped=*/true, /*waited=*/false, lux};
    platform::clock().waitUntil(cond, lock, platform::clock().now() + kSamplingPeriod);
    return {/*stopped=*/!running, /*waited=*/true, lux};
}

void DisplayAlad::follow(int32_t meanLux) {
    curve.fill(0);  // once a sample: values that the closed library does not write stay from step to step
    switch (actionFor(curveActive, meanLux)) {
        case CurveAction::ACTIVATE:
            return activate(meanLux);
        case CurveAction::TRACK:
            return track(meanLux);
        case CurveAction::DEACTIVATE:
            return deactivate();
        case CurveAction::NONE:
            return;
    }
}

void DisplayAlad::activate(int32_t meanLux) {
    if (!send(kOn, {AladParamPair{kModeKey, {kModeAmbient}}, curveOf(baseLevel)})) return;
    const int32_t target = getAGTMLevel(meanLux);
    runRamp(rampUp(baseLevel, target));
    curveActive = true;
    curveLevel = target;
}

void DisplayAlad::track(int32_t meanLux) {
    const int32_t target = getAGTMLevel(meanLux);
    runRamp(rampTo(curveLevel, target));
    curveLevel = target;
}

void DisplayAlad::deactivate() {
    if (!runRamp(rampDown(curveLevel, baseLevel))) return;
    send(kOff, {});
    curveActive = false;
}

bool DisplayAlad::runRamp(const Ramp& ramp) {
    for (int64_t level = ramp.first; ramp.reaches(level); level += ramp.step) {
        if (!send(kOn, {curveOf(static_cast<int32_t>(level))})) return false;
    }
    return true;
}

bool DisplayAlad::send(uint32_t enable, const Params& params) {
    platform::dropAnswer(composerExt->setAladParams(0, enable, params));
    platform::clock().sleepFor(kMessagePause);
    return running;
}

AladParamPair DisplayAlad::curveOf(int32_t level) {
    getAGTMCurveParams(level, curve.data());
    AladParamPair pair{kCurveKey, {}};
    pair.values.resize(curve.size());
    std::copy(curve.begin(), curve.end(), pair.values.begin());
    return pair;
}

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
