// The library's log lines. Each begins with the logging function's name and the source line, "%s:%d: ".
#pragma once

#include <android/log.h>

#include <atomic>
#include <cstdint>

namespace platform {

constexpr const char* kLogTag = "KovDisplayControlService";

// The priority below which the platform's log suppresses a line; written by __android_log_set_minimum_priority.
extern std::atomic<int32_t> minimumLogPriority;

inline bool isLogged(int32_t priority) {
    return priority >= minimumLogPriority.load(std::memory_order_relaxed);
}

}  // namespace platform

// PLATFORM_LOG(priority, format, arguments...): nothing but the priority is evaluated for a suppressed line.
// The "%.0s" at the end takes an empty text, which gives a format without arguments the one that C++17 asks for.
#define PLATFORM_LOG(priority, ...) PLATFORM_LOG_LINE(priority, __VA_ARGS__, "")
#define PLATFORM_LOG_LINE(priority, format, ...)                                                          \
    do {                                                                                                  \
        if (platform::isLogged(priority))                                                                 \
            __android_log_print(priority, platform::kLogTag, "%s:%d: " format "%.0s", __func__, __LINE__, \
                                __VA_ARGS__);                                                             \
    } while (false)

// The same without function name and line; format takes at least one argument or is a plain text.
#define PLATFORM_LOG_BARE(priority, ...)                                                                 \
    do {                                                                                                 \
        if (platform::isLogged(priority)) __android_log_print(priority, platform::kLogTag, __VA_ARGS__); \
    } while (false)

#define LOG_DEBUG(...) PLATFORM_LOG(ANDROID_LOG_DEBUG, __VA_ARGS__)
#define LOG_INFO(...) PLATFORM_LOG(ANDROID_LOG_INFO, __VA_ARGS__)
#define LOG_ERROR(...) PLATFORM_LOG(ANDROID_LOG_ERROR, __VA_ARGS__)
