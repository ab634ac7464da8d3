// SPDX-License-Identifier: Apache-2.0
// The sensor service.
#pragma once

#include <android/frameworks/sensorservice/1.0/IEventQueue.h>
#include <android/frameworks/sensorservice/1.0/IEventQueueCallback.h>
#include <android/frameworks/sensorservice/1.0/types.h>
#include <android/hardware/sensors/1.0/types.h>
#include <android/hidl/base/1.0/IBase.h>
#include <hidl/Status.h>
#include <platform/Services.h>

#include <functional>
#include <string>

namespace android::frameworks::sensorservice::V1_0 {

// Every callback is called once, before the operation returns.
struct ISensorManager : public ::android::hidl::base::V1_0::IBase {
    static constexpr const char* descriptor = "android.frameworks.sensorservice@1.0::ISensorManager";

    virtual ::android::hardware::Return<void> getDefaultSensor(
        ::android::hardware::sensors::V1_0::SensorType type,
        std::function<void(const ::android::hardware::sensors::V1_0::SensorInfo&, Result)> callback) = 0;
    virtual ::android::hardware::Return<void> createEventQueue(
        const sp<IEventQueueCallback>& eventCallback, std::function<void(const sp<IEventQueue>&, Result)> callback) = 0;

    // The service with that instance name, or null. There are no passthrough stubs: a request for one returns null.
    static sp<ISensorManager> getService(const std::string& serviceName = "default", bool getStub = false) {
        if (getStub) return nullptr;
        return static_cast<ISensorManager*>(platform::findService(descriptor, serviceName).get());
    }

    status_t registerAsService(const std::string& serviceName = "default") {
        return platform::addService(descriptor, serviceName, this);
    }
};

}  // namespace android::frameworks::sensorservice::V1_0
