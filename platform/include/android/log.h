// The platform's log, as far as it is used here. A line goes to the process's logger; the default logger writes it to
// standard error as `logcat -v brief` shows it. Every function may be called from any thread.
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
    const char* file;  // null: the log functions here do not know it
    uint32_t line;     // 0 where file is null
    const char* message;
};

typedef void (*__android_logger_function)(const struct __android_log_message* log_message);

// Formats a line of at most 1023 bytes (the rest is cut) and hands it to the logger. A line whose priority is below the
// minimum is not formatted. Returns 1 when the line was handed on, 0 when it was suppressed.
int __android_log_print(int prio, const char* tag, const char* fmt, ...) __attribute__((format(printf, 3, 4)));

// Replaces the process's logger, by the default one for null; it is called on the thread that logs, and has to be safe
// for several at once.
void __android_log_set_logger(__android_logger_function logger);

// The default logger: "D/TAG( pid): text" and a line feed, in one write to standard error.
void __android_log_stderr_logger(const struct __android_log_message* log_message);

// Lines below this priority are suppressed. Returns the minimum in force before; everything is printed at first.
int32_t __android_log_set_minimum_priority(int32_t priority);
int32_t __android_log_get_minimum_priority(void);

}  // extern "C"
