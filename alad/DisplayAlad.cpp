#include "alad/DisplayAlad.h"

#include <closed/alad_algo_publish.h>
#include <platform/Answer.h>
#include <platform/Clock.h>
#include <platform/Log.h>
#include <platform/Numbers.h>
#include <platform/OutOfMemory.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <exception>
#include <utility>

#include "alad/SensorFeed.h"

namespace vendor::kov::hardware::display_control::V1_0::implementation {

namespace {

using ::android::sp;
using ::android::hardware::Return;
using composer_ext::V1_0::AladParamPair;
using composer_ext::V1_0::IComposerExt;
using namespace std::chrono_literals;

constexpr int32_t kIndoorLux = 300;  // in force until the sensor says something else
constexpr auto kSamplingPeriod = 1s;
constexpr auto kMessagePause = 20ms;

// Parameters of the composer's tone curve.
constexpr int32_t kModeKey = 0;
constexpr int64_t kModeAmbient = 4;
constexpr int32_t kCurveKey = 14;

constexpr uint32_t kOn = 1;
constexpr uint32_t kOff = 0;

}  // namespace

// Stands between the controller and the sensor side, which may hold it for longer than the controller lives. mutex
// guards owner: detaching and an event in delivery exclude each other.
class DisplayAlad::SensorCallback final : public sensorservice::IEventQueueCallback {
public:
    explicit SensorCallback(DisplayAlad* controller) : owner(controller) {}

    // Events that come from now on are dropped.
    void detach() PLATFORM_EXCLUDES(mutex) {
        const platform::Lock lock(mutex);
        owner = nullptr;
    }

    // Takes the payload's first float as the light level in lux, whatever the sensor.
    Return<void> onEvent(const ::android::hardware::sensors::V1_0::Event& event) override PLATFORM_EXCLUDES(mutex) {
        const platform::Lock lock(mutex);
        if (owner != nullptr) owner->notifyData(platform::toInt32(event.u.scalar));
        return ::android::hardware::Void();
    }

private:
    platform::Mutex mutex;
    DisplayAlad* owner PLATFORM_GUARDED_BY(mutex);
};

// An attempt to enable: detaches the callback at its end, unless it succeeded.
class DisplayAlad::Attachment {
public:
    explicit Attachment(DisplayAlad* controller) : feed(new SensorCallback(controller)) {}
    ~Attachment() {
        if (feed != nullptr) feed->detach();
    }
    Attachment(const Attachment&) = delete;
    Attachment& operator=(const Attachment&) = delete;

    const sp<SensorCallback>& get() const { return feed; }
    sp<SensorCallback> keep() { return std::exchange(feed, nullptr); }

private:
    sp<SensorCallback> feed;
};

DisplayAlad::DisplayAlad(const sp<IComposerExt>& composer) : composerExt(composer) {}

DisplayAlad::~DisplayAlad() = default;

int DisplayAlad::enable() {
    if (enabled) return 0;

    const auto manager = sensorservice::ISensorManager::getService("default", /*getStub=*/false);
    if (manager == nullptr) {
        LOG_ERROR("ISensorManager getService error");
        return -1;
    }
    int32_t handle = 0;
    if (!findLightSensor(*manager, handle)) {
        LOG_ERROR("get light Sensor error");
        return -2;
    }
    sp<sensorservice::IEventQueue> queue;
    Attachment feed(this);  // goes before the queue
    if (!createQueue(*manager, feed.get(), queue)) {
        LOG_ERROR("createEventQueue error");
        return -3;
    }
    notifyData(kIndoorLux);
    if (!switchSensorOn(*queue, handle)) {
        LOG_ERROR("enableSensor error");
        return -4;
    }
    if (!startWorker()) {
        LOG_ERROR("start worker error");
        switchSensorOff(*queue, handle);
        return -5;
    }

    sensorManager = manager;
    eventQueue = queue;
    callback = feed.keep();
    sensorHandle = handle;
    enabled = true;
    return 0;
}

// Also resets what the worker starts from. False when there is no thread for it.
bool DisplayAlad::startWorker() {
    curveActive = false;
    filter = {};
    setRunning(true);
    try {
        worker = platform::clock().startThread([this] { workThread(); });
        return true;
    } catch (const std::exception&) {
        setRunning(false);
        return false;
    }
}

void DisplayAlad::setRunning(bool on) {
    const platform::Lock lock(mutex);
    running = on;
    cond.notifyOne();
}

void DisplayAlad::disable() {
    if (!enabled) return;
    if (!switchSensorOff(*eventQueue, sensorHandle)) PLATFORM_LOG_BARE(ANDROID_LOG_ERROR, "disableSensor error");
    callback->detach();
    callback.clear();
    eventQueue.clear();
    sensorManager.clear();
    setRunning(false);
    platform::clock().join(worker);
    enabled = false;
    platform::dropAnswer(composerExt->setAladParams(0, kOff, {}));
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
            if (wake.waited) LOG_DEBUG("exit");
            return;
        }
        const int32_t mean = filter.add(wake.lux, curveActive);
        LOG_DEBUG("avg:%d curr:%d", mean, wake.lux);
        if (!follow(mean)) return;
    }
}

DisplayAlad::Wake DisplayAlad::awaitSample() {
    platform::Lock lock(mutex);
    if (!running) return {/*stopped=*/true, /*waited=*/false, 0};
    platform::clock().waitUntil(cond, lock, platform::clock().now() + kSamplingPeriod);
    return {/*stopped=*/!running, /*waited=*/true, lux};
}

bool DisplayAlad::follow(int32_t meanLux) {
    curve.fill(0);  // once a cycle: what the closed library does not write stays from step to step
    switch (actionFor(curveActive, meanLux)) {
        case CurveAction::ACTIVATE:
            return activate(meanLux);
        case CurveAction::TRACK:
            return track(meanLux);
        case CurveAction::DEACTIVATE:
            return deactivate();
        case CurveAction::NONE:
            break;
    }
    return true;
}

bool DisplayAlad::activate(int32_t meanLux) {
    const auto start = platform::unlessOutOfMemory(Params{}, [this] {
        return Params{AladParamPair{kModeKey, {kModeAmbient}}, curveOf(baseLevel)};
    });
    if (start.size() == 0) return true;  // the next sample is another attempt
    if (!send(kOn, [&start]() -> const Params& { return start; })) return false;
    const int32_t target = getAGTMLevel(meanLux);
    if (!runRamp(rampUp(baseLevel, target))) return false;
    curveActive = true;
    curveLevel = target;
    return true;
}

bool DisplayAlad::track(int32_t meanLux) {
    const int32_t target = getAGTMLevel(meanLux);
    if (!runRamp(rampTo(curveLevel, target))) return false;
    curveLevel = target;
    return true;
}

bool DisplayAlad::deactivate() {
    if (!runRamp(rampDown(curveLevel, baseLevel))) return false;
    send(kOff, [] { return Params{}; });
    curveActive = false;
    curveLevel = 0;
    return true;
}

bool DisplayAlad::runRamp(const Ramp& ramp) {
    for (int64_t level = ramp.first; ramp.reaches(level); level += ramp.step) {
        const auto step = [&] { return Params{curveOf(static_cast<int32_t>(level))}; };
        if (!send(kOn, step)) return false;
    }
    return true;
}

template <typename Message>
bool DisplayAlad::send(uint32_t enable, Message message) {
    platform::unlessOutOfMemory(false, [&] { return composerExt->setAladParams(0, enable, message()).isOk(); });
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
