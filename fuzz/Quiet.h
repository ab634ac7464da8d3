// SPDX-License-Identifier: Apache-2.0
// The process without a word on standard error but the fuzzer's own.
#pragma once

#include <android/log.h>
#include <libxml/xmlerror.h>

namespace fuzz {

// Log lines are formatted and dropped, and so is what libxml2 says. To be called before each run: libxml2 forgets it.
inline void beQuiet() {
    __android_log_set_logger([](const __android_log_message*) {});
    xmlSetStructuredErrorFunc(nullptr, [](void*, xmlErrorPtr) {});
}

}  // namespace fuzz
