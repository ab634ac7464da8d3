// SPDX-License-Identifier: Apache-2.0
// Calls of the sensor service, with their answers as values.
#pragma once

#include <android/frameworks/sensorservice/1.0/ISensorManager.h>

#include <cstdint>

namespace vendor::kov::hardware::display_control::V1_0::implementation {

namespace sensorservice = ::android::frameworks::sensorservice::V1_0;

// Each returns false if the transport fails, the result is not OK or no result is delivered.

// Gets the handle of the default light sensor.
bool findLightSensor(sensorservice::ISensorManager& manager, int32_t& sensorHandle);

// Creates a queue that delivers events to callback. False also if the service delivers no queue.
bool createQueue(sensorservice::ISensorManager& manager,
                 const ::android::sp<sensorservice::IEventQueueCallback>& callback,
                 ::android::sp<sensorservice::IEventQueue>& queue);

// Switches the sensor on: one event a second, delivered without batching.
bool switchSensorOn(sensorservice::IEventQueue& queue, int32_t sensorHandle);
bool switchSensorOff(sensorservice::IEventQueue& queue, int32_t sensorHandle);

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
