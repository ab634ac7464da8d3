// SPDX-License-Identifier: Apache-2.0
// The members of the platform's log that the project uses. A line goes to the process's logger; the default logger
// writes it to standard error in the form of `logcat -v brief`. Every function may be called from any thread.
#pragma once

#include <stddef.h>
#include <stdint.h>

extern "C" {

typedef enum android_LogPriority {
    ANDROID_LOG_UNKNOWN = 0,
    ANDROID_LOG_DEFAULT,
    ANDROID_LOG_VERBOSE,
    ANDROID_LOG_DEBUG,
    ANDROID_LOG_INFO,
    ANDROID_LOG_WARN,
    ANDROID_LOG_ERROR,
    ANDROID_LOG_FATAL,
    ANDROID_LOG_SILENT,
} android_LogPriority;

typedef enum log_id {
    LOG_ID_MAIN = 0,
    LOG_ID_DEFAULT = 0x7FFFFFFF,
} log_id_t;

struct __android_log_message {
    size_t struct_size;  // sizeof(__android_log_message)
    int32_t buffer_id;   // one of log_id
    int32_t priority;    // one of android_LogPriority
    const char* tag;
    const char* file;  // always null here
    uint32_t line;     // 0 where file is null
    const char* message;
};

typedef void (*__android_logger_function)(const struct __android_log_message* log_message);

// Formats a line of at most 1023 bytes (a longer one is cut) and passes it to the logger. A line below the minimum
// priority is not formatted. Returns 1 if the line was passed on, 0 if it was suppressed.
int __android_log_print(int prio, const char* tag, const char* fmt, ...) __attribute__((format(printf, 3, 4)));

// Replaces the process's logger; null restores the default one. The logger is called on the thread that logs, on
// several threads at once.
void __android_log_set_logger(__android_logger_function logger);

// The default logger: "D/TAG( pid): text" and a line feed, in one write to standard error.
void __android_log_stderr_logger(const struct __android_log_message* log_message);

// Suppresses lines below this priority. By default no line is suppressed. Returns the previous minimum.
int32_t __android_log_set_minimum_priority(int32_t priority);

}  // extern "C"
