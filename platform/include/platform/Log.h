// SPDX-License-Identifier: Apache-2.0
// The library's log lines. Each begins with the logging function's name and the source line, "%s:%d: ".
#pragma once

#include <android/log.h>

#include <atomic>
#include <cstdint>

namespace platform {

constexpr const char* kLogTag = "KovDisplayControlService";

// Lines below this priority are not evaluated. __android_log_set_minimum_priority of the host's log sets it; on the
// phone no line is below it.
extern std::atomic<int32_t> minimumLogPriority;

inline bool isLogged(int32_t priority) {
    return priority >= minimumLogPriority.load(std::memory_order_relaxed);
}

}  // namespace platform

// PLATFORM_LOG(priority, format, arguments...). The arguments of a suppressed line are not evaluated.
// The "%.0s" at the end prints an empty text: so a format without arguments has one, as C++17 requires.
#define PLATFORM_LOG(priority, ...) PLATFORM_LOG_LINE(priority, __VA_ARGS__, "")
#define PLATFORM_LOG_LINE(priority, format, ...)                                                            \
    do {                                                                                                    \
        if (::platform::isLogged(priority))                                                                 \
            __android_log_print(priority, ::platform::kLogTag, "%s:%d: " format "%.0s", __func__, __LINE__, \
                                __VA_ARGS__);                                                               \
    } while (false)

// The same without function name and line.
#define PLATFORM_LOG_BARE(priority, ...)                                                                     \
    do {                                                                                                     \
        if (::platform::isLogged(priority)) __android_log_print(priority, ::platform::kLogTag, __VA_ARGS__); \
    } while (false)

#define PLATFORM_LOG_DEBUG(...) PLATFORM_LOG(ANDROID_LOG_DEBUG, __VA_ARGS__)
#define PLATFORM_LOG_INFO(...) PLATFORM_LOG(ANDROID_LOG_INFO, __VA_ARGS__)
#define PLATFORM_LOG_ERROR(...) PLATFORM_LOG(ANDROID_LOG_ERROR, __VA_ARGS__)
