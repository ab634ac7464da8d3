// SPDX-License-Identifier: Apache-2.0
// The sample phone's files.
#pragma once

#include <platform/DeviceFiles.h>

namespace bench {

// They are the device's as long as it lives.
class SamplePhone {
public:
    SamplePhone() { platform::setDeviceRoot(DISPLAY_CONTROL_DATA_DIR "/phone"); }
    ~SamplePhone() { platform::setDeviceRoot(""); }
    SamplePhone(const SamplePhone&) = delete;
    SamplePhone& operator=(const SamplePhone&) = delete;
};

}  // namespace bench
