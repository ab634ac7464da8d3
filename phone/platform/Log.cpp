// SPDX-License-Identifier: Apache-2.0
// The log on the phone: every line goes to __android_log_print, which filters by its own rules.
#include <platform/Log.h>

namespace platform {

std::atomic<int32_t> minimumLogPriority{ANDROID_LOG_UNKNOWN};

}  // namespace platform
