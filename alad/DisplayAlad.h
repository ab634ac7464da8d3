// SPDX-License-Identifier: Apache-2.0
// The ambient-light adaptive display (ALAD).
#pragma once

#include <android/frameworks/sensorservice/1.0/ISensorManager.h>
#include <platform/Mutex.h>
#include <platform/Thread.h>
#include <vendor/kov/hardware/composer_ext/1.0/IComposerExt.h>

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>

#include "alad/LightFilter.h"
#include "alad/ToneCurveRamp.h"

namespace vendor::kov::hardware::display_control::V1_0::implementation {

// Follows the ambient light on display 0 and ramps the composer's tone curve with it.
//
// Owned by the service, which calls enable() and disable() one at a time, never on the worker thread, and deletes an
// enabled controller only after disable(). The sensor service delivers events on its own thread, to a SensorCallback.
// The controller starts one thread, the worker, which runs from enable() to the end of disable(). mutex guards what
// these threads share: the latest light level and the worker's running flag. It is not held during calls of the
// composer and the sensor service.
class DisplayAlad {
public:
    explicit DisplayAlad(const ::android::sp<composer_ext::V1_0::IComposerExt>& composer);
    ~DisplayAlad();
    DisplayAlad(const DisplayAlad&) = delete;
    DisplayAlad& operator=(const DisplayAlad&) = delete;

    // Switches the light sensor on and starts the worker. Returns 0 on success and if already enabled. Otherwise the
    // controller stays disabled, and the result is the step that failed: -1 no sensor service, -2 no light sensor, -3
    // no event queue, -4 the sensor cannot be switched on, -5 the worker thread cannot be started.
    int enable();

    // Switches the sensor off, joins the worker and switches the tone curve off at the composer. Returns at once while
    // the worker waits for a sample, and after the current message and its pause during a ramp. Does nothing if
    // disabled.
    void disable();

    // Sets the latest light level in lux, as a sensor event does. The worker reads it with its next sample. Any thread.
    void notifyData(int32_t newLux) PLATFORM_EXCLUDES(mutex);

    // x to the power of 1 / 2.2.
    static double nitToGray(double x);

private:
    class SensorCallback;
    using Params = ::android::hardware::hidl_vec<composer_ext::V1_0::AladParamPair>;

    bool startWorker() PLATFORM_EXCLUDES(mutex);
    void stopWorker() PLATFORM_EXCLUDES(mutex);

    // Body of the worker thread: one sample a second until the worker is stopped.
    void workThread();
    // Result of waiting for a sample.
    struct Wake {
        bool stopped;
        bool waited;  // false if the worker was stopped before it began to wait
        int32_t lux;  // the sample; not valid if stopped
    };
    Wake awaitSample() PLATFORM_EXCLUDES(mutex);

    // Ramps the tone curve as the mean light level requires. Each of these ends early if the worker is stopped.
    void follow(int32_t meanLux);
    void activate(int32_t meanLux);
    void track(int32_t meanLux);
    void deactivate();
    // False if the worker was stopped.
    bool runRamp(const Ramp& ramp);
    // Sends one message to the composer and pauses. False if the worker was stopped.
    bool send(uint32_t enable, const Params& params);
    composer_ext::V1_0::AladParamPair curveOf(int32_t level);

    const ::android::sp<composer_ext::V1_0::IComposerExt> composerExt;

    // Used by the thread that calls enable() and disable(); null while disabled.
    ::android::sp<::android::frameworks::sensorservice::V1_0::ISensorManager> sensorManager;
    ::android::sp<::android::frameworks::sensorservice::V1_0::IEventQueue> eventQueue;
    ::android::sp<SensorCallback> callback;
    int32_t sensorHandle = 0;
    bool enabled = false;
    std::unique_ptr<platform::Thread> worker;

    // Used by the worker while it runs, by enable() before that.
    bool curveActive = false;  // the tone curve is on at the composer
    int32_t curveLevel = 0;    // level of the curve after the last ramp; only while the curve is on
    int32_t baseLevel = 0;     // level of indoor light, at which the curve turns on and off
    LightFilter filter;
    std::array<int32_t, 256> curve{};  // curve parameters of a level, in the closed library's order

    platform::Mutex mutex;
    platform::Condition cond;          // disable() notifies it to end the worker's wait
    std::atomic<bool> running{false};  // written under mutex; the worker reads it without mutex during a ramp
    int32_t lux PLATFORM_GUARDED_BY(mutex) = -1;  // latest light level
};

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
