// SPDX-License-Identifier: Apache-2.0
// The library's log, switched off.
#pragma once

#include <android/log.h>

namespace bench {

// Suppresses every log line as long as it lives.
class QuietLog {
public:
    QuietLog() : before(__android_log_set_minimum_priority(ANDROID_LOG_SILENT)) {}
    ~QuietLog() { __android_log_set_minimum_priority(before); }
    QuietLog(const QuietLog&) = delete;
    QuietLog& operator=(const QuietLog&) = delete;

private:
    const int32_t before;
};

}  // namespace bench
