// SPDX-License-Identifier: Apache-2.0
// The library as the service process publishes it, and a client of it.
#pragma once

#include "phone/DisplayControl.h"

namespace simulator {

namespace display_control = ::vendor::kov::hardware::display_control::V1_0;

// Owns the library and publishes it as the "default" display-control service while it lives. It is made after the Phone
// and ends before it.
class ServedLibrary {
public:
    ServedLibrary();
    ~ServedLibrary();
    ServedLibrary(const ServedLibrary&) = delete;
    ServedLibrary& operator=(const ServedLibrary&) = delete;

    // The service, as getService finds it.
    display_control::IDisplayControl& client() const { return *service; }
    // What the service process itself calls, init() and deInit(), and the state.
    display_control::implementation::DisplayControlImpl& library() { return served; }
    const display_control::implementation::DisplayControlImpl& library() const { return served; }

private:
    display_control::implementation::DisplayControlImpl served;
    ::android::sp<display_control::IDisplayControl> service;
};

}  // namespace simulator
