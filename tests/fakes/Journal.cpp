#include "tests/fakes/Journal.h"

#include <android/log.h>
#include <platform/Log.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <iterator>
#include <mutex>
#include <regex>

namespace fakes {

namespace journal {

namespace {

std::mutex mutex;  // guards lines
std::vector<std::string> lines;
std::function<std::string()> sayAside;

}  // namespace

void add(const std::string& line) {
    const bool withAside = sayAside && line.rfind("log ", 0) != 0;
    const std::string full = withAside ? line + sayAside() : line;
    const std::lock_guard guard(mutex);
    lines.push_back(full);
}

std::vector<std::string> take(const std::string& kind) {
    const std::lock_guard guard(mutex);
    std::vector<std::string> taken;
    std::copy_if(lines.begin(), lines.end(), std::back_inserter(taken),
                 [&kind](const std::string& line) { return line.rfind(kind, 0) == 0; });
    lines.clear();
    return taken;
}

void setAside(std::function<std::string()> aside) {
    sayAside = std::move(aside);
}

}  // namespace journal

namespace {

void addLogLine(const __android_log_message* message) {
    static const std::regex prefix("^([A-Za-z0-9()]+):[0-9]+: ");
    const std::string tag = message->tag == std::string(platform::kLogTag) ? "" : std::string(message->tag) + " ";
    const char letter = "??VDIWEFS"[message->priority];
    journal::add(std::string("log ") + letter + " " + tag + std::regex_replace(message->message, prefix, "$1: "));
}

}  // namespace

std::string text(const float* values, size_t count) {
    std::string result;
    for (size_t i = 0; i < count; ++i) {
        char value[32];
        snprintf(value, sizeof value, "%.9g", static_cast<double>(values[i]));
        result += (i == 0 ? "[" : " ") + std::string(std::isnan(values[i]) ? "nan" : value);
    }
    return result == "[1 0 0 0 1 0 0 0 1" ? "I" : result + "]";
}

JournaledLog::JournaledLog() {
    __android_log_set_logger(addLogLine);
}

JournaledLog::~JournaledLog() {
    __android_log_set_logger(__android_log_stderr_logger);
}

}  // namespace fakes
