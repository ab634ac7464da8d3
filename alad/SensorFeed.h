// The light sensor's way to whoever follows the light.
#pragma once

#include <android/frameworks/sensorservice/1.0/ISensorManager.h>
#include <platform/Mutex.h>

#include <cstdint>

namespace vendor::kov::hardware::display_control::V1_0::implementation {

namespace sensorservice = ::android::frameworks::sensorservice::V1_0;

// The sensor service's answers as values: a failed transport, a result other than OK and an answer that is not
// delivered are all the same failure.

// False without a light sensor; then sensorHandle is as it was.
bool findLightSensor(sensorservice::ISensorManager& manager, int32_t& sensorHandle);

// False without a queue that can be used; then queue is what was delivered all the same.
bool createQueue(sensorservice::ISensorManager& manager,
                 const ::android::sp<sensorservice::IEventQueueCallback>& callback,
                 ::android::sp<sensorservice::IEventQueue>& queue);

// Events once a second, each as soon as it is there.
bool switchSensorOn(sensorservice::IEventQueue& queue, int32_t sensorHandle);
bool switchSensorOff(sensorservice::IEventQueue& queue, int32_t sensorHandle);

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
