// The ambient-light adaptive display (ALAD).
#pragma once

#include <android/frameworks/sensorservice/1.0/ISensorManager.h>
#include <platform/Mutex.h>
#include <vendor/kov/hardware/composer_ext/1.0/IComposerExt.h>

#include <array>
#include <atomic>
#include <cstdint>
#include <thread>

#include "alad/LightFilter.h"
#include "alad/ToneCurveRamp.h"

namespace vendor::kov::hardware::display_control::V1_0::implementation {

// Follows the ambient light on display 0 and ramps the composer's tone curve with it.
//
// Owned by the service, which calls enable() and disable() one at a time, never on the worker, and deletes an enabled
// controller only after disable(). The sensor side calls in on a thread of its own through a SensorCallback; the only
// thread started here is the worker, from enable() to the end of disable(). mutex guards what these threads share: the
// latest light level and whether the worker may go on. The composer and the sensor service are called without it.
class DisplayAlad {
public:
    explicit DisplayAlad(const ::android::sp<composer_ext::V1_0::IComposerExt>& composer);
    ~DisplayAlad();
    DisplayAlad(const DisplayAlad&) = delete;
    DisplayAlad& operator=(const DisplayAlad&) = delete;

    // Switches the light sensor on and starts the worker. 0 on success and when enabled already; otherwise nothing is
    // kept and the answer says which step failed: -1 no sensor service, -2 no light sensor, -3 no event queue, -4 the
    // sensor cannot be switched on, -5 no thread for the worker.
    int enable();

    // Switches the sensor off, ends the worker and tells the composer to drop the tone curve. Returns at once while the
    // worker waits for its next sample, and after the message in flight and its pause while it ramps. Nothing happens
    // on a controller that is not enabled.
    void disable();

    // Takes a light level in lux as a sensor event does: the worker picks it up at its next sample. Any thread.
    void notifyData(int32_t newLux) PLATFORM_EXCLUDES(mutex);

    // x to the power of 1 / 2.2.
    static double nitToGray(double x);

private:
    class SensorCallback;
    class Attachment;
    using Params = ::android::hardware::hidl_vec<composer_ext::V1_0::AladParamPair>;

    bool startWorker();
    void setRunning(bool on) PLATFORM_EXCLUDES(mutex);

    // The body of the worker's thread: a sample a second until it is told to stop.
    void workThread();
    // Why the worker's wait for a sample ended.
    struct Wake {
        bool stopped;
        bool waited;  // false when it was told to stop before it waited
        int32_t lux;  // the sample, unless stopped
    };
    Wake awaitSample() PLATFORM_EXCLUDES(mutex);

    // Does what a mean light level asks for. Like all below, it reports whether the worker may go on.
    bool follow(int32_t meanLux);
    bool activate(int32_t meanLux);
    bool track(int32_t meanLux);
    bool deactivate();
    bool runRamp(const Ramp& ramp);
    // The message() to the composer and the pause after it. Without memory for it the pause is all there is, as for a
    // message that the composer did not get.
    template <typename Message>
    bool send(uint32_t enable, Message message);
    composer_ext::V1_0::AladParamPair curveOf(int32_t level);

    const ::android::sp<composer_ext::V1_0::IComposerExt> composerExt;

    // Of the thread that calls enable() and disable(); null and not joinable while not enabled.
    ::android::sp<::android::frameworks::sensorservice::V1_0::ISensorManager> sensorManager;
    ::android::sp<::android::frameworks::sensorservice::V1_0::IEventQueue> eventQueue;
    ::android::sp<SensorCallback> callback;
    int32_t sensorHandle = 0;
    bool enabled = false;
    std::thread worker;

    // Of the worker while it runs, of enable() before.
    bool curveActive = false;  // the tone curve is on at the composer
    int32_t curveLevel = 0;    // the level it has settled at, 0 while it is off
    int32_t baseLevel = 0;     // the level of indoor light, at which the curve goes on and off
    LightFilter filter;
    std::array<int32_t, 256> curve{};  // the parameters of a level, as the closed library writes them

    platform::Mutex mutex;
    platform::Condition cond;          // ends the worker's wait for a sample early; used under mutex
    std::atomic<bool> running{false};  // the worker may go on; written under mutex, read without it during a ramp
    int32_t lux PLATFORM_GUARDED_BY(mutex) = -1;  // latest light level
};

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
