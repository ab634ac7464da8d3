#include <platform/Log.h>

#include <unistd.h>

#include <algorithm>
#include <cstdarg>
#include <cstdio>

namespace platform {

std::atomic<int32_t> minimumLogPriority{ANDROID_LOG_DEFAULT};

}  // namespace platform

namespace {

constexpr size_t kMaxMessage = 1024;  // bytes, the final zero included; longer ones are cut, as on the phone

std::atomic<__android_logger_function> currentLogger{__android_log_stderr_logger};

char letterOf(int32_t priority) {
    constexpr char kLetters[] = {'?', '?', 'V', 'D', 'I', 'W', 'E', 'F', 'S'};
    return priority >= 0 && priority <= ANDROID_LOG_SILENT ? kLetters[priority] : '?';
}

}  // namespace

extern "C" {

int __android_log_print(int prio, const char* tag, const char* fmt, ...) {
    if (!platform::isLogged(prio)) return 0;
    char message[kMaxMessage];
    va_list arguments;
    va_start(arguments, fmt);
    vsnprintf(message, sizeof message, fmt, arguments);  // NOLINT(clang-analyzer-valist.Uninitialized): it is not
    va_end(arguments);
    const __android_log_message line{sizeof line, LOG_ID_MAIN, prio, tag, nullptr, 0, message};
    currentLogger.load()(&line);
    return 1;
}

void __android_log_set_logger(__android_logger_function logger) {
    currentLogger.store(logger);
}

void __android_log_stderr_logger(const struct __android_log_message* log_message) {
    char line[kMaxMessage + 128];
    const int length = snprintf(line, sizeof line, "%c/%s(%5d): %s\n", letterOf(log_message->priority),
                                log_message->tag, getpid(), log_message->message);
    if (length < 0) return;
    const size_t bytes = std::min(static_cast<size_t>(length), sizeof line - 1);
    [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, line, bytes);  // a log has nowhere to complain
}

int32_t __android_log_set_minimum_priority(int32_t priority) {
    return platform::minimumLogPriority.exchange(priority);
}

int32_t __android_log_get_minimum_priority(void) {
    return platform::minimumLogPriority.load();
}

}  // extern "C"
