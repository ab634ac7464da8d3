// SPDX-License-Identifier: Apache-2.0
#include <platform/Log.h>

#include <pthread.h>
#include <unistd.h>

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <string>
#include <string_view>

namespace platform {

std::atomic<int32_t> minimumLogPriority{ANDROID_LOG_DEFAULT};

}  // namespace platform

namespace {

constexpr size_t kMaxMessage = 1024;  // bytes with the final zero; longer messages are cut, as on the phone

std::atomic<__android_logger_function> currentLogger{__android_log_stderr_logger};

std::string_view letterOf(int32_t priority) {
    constexpr std::string_view kLetters = "??VDIWEFS";
    const auto position = static_cast<uint32_t>(priority);
    return kLetters.substr(position < kLetters.size() ? position : 0, 1);
}

// Cached; read again in a forked process.
pid_t processId() {
    static std::atomic<pid_t> id{getpid()};
    [[maybe_unused]] static const int kWatched = pthread_atfork(nullptr, nullptr, [] { id = getpid(); });
    return id;
}

// Builds a printed line. Text that does not fit is cut.
struct Line {
    void add(std::string_view part) {
        const size_t bytes = std::min(part.size(), kLongest - length);
        memcpy(text + length, part.data(), bytes);
        length += bytes;
    }

    // At least five characters wide.
    void addNumber(int number) {
        const std::string written = std::to_string(number);
        constexpr std::string_view kBlanks = "     ";
        add(kBlanks.substr(std::min(written.size(), kBlanks.size())));
        add(written);
    }

    void end() { text[length++] = '\n'; }

    static constexpr size_t kLongest = kMaxMessage + 128;
    char text[kLongest + 1];
    size_t length = 0;
};

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
    currentLogger.store(logger == nullptr ? __android_log_stderr_logger : logger);
}

void __android_log_stderr_logger(const struct __android_log_message* log_message) {
    Line line;
    line.add(letterOf(log_message->priority));
    line.add("/");
    line.add(log_message->tag == nullptr ? "" : log_message->tag);
    line.add("(");
    line.addNumber(processId());
    line.add("): ");
    line.add(log_message->message);
    line.end();
    [[maybe_unused]] const ssize_t written =
        write(STDERR_FILENO, line.text, line.length);  // no place to report a failure
}

int32_t __android_log_set_minimum_priority(int32_t priority) {
    return platform::minimumLogPriority.exchange(priority);
}

}  // extern "C"
