// SPDX-License-Identifier: Apache-2.0
// The process that serves the display-control interface.
#include <hidl/HidlTransportSupport.h>
#include <unistd.h>

#include "phone/Serve.h"

int main() {
    // One thread, this one: the library takes one operation at a time.
    ::android::hardware::configureRpcThreadpool(1, /*callerWillJoin=*/true);
    return vendor::kov::hardware::display_control::V1_0::implementation::serve(
        ::android::hardware::joinRpcThreadpool,
        [] { _exit(1); });  // without destructors: other threads may be in the library
}
