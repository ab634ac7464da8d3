// SPDX-License-Identifier: Apache-2.0
// Standard error for the fuzzer's own output alone.
#pragma once

#include <android/log.h>
#include <libxml/xmlerror.h>

namespace fuzz {

// Log lines are formatted and dropped, and libxml2's messages are dropped. Call it before each run: libxml2 forgets it.
inline void beQuiet() {
    __android_log_set_logger([](const __android_log_message*) {});
    xmlSetStructuredErrorFunc(nullptr, [](void*, xmlErrorPtr) {});
}

}  // namespace fuzz
