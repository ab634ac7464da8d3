#include "tests/fakes/Journal.h"

#include <android/log.h>
#include <platform/Log.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <iterator>
#include <mutex>

namespace fakes {

namespace {

std::mutex mutex;  // guards lines
std::vector<std::string> lines;
std::function<std::string()> sayAside;

bool beginsWith(const std::string& line, const std::string& beginning) {
    return line.compare(0, beginning.size(), beginning) == 0;
}

void addLogLine(const __android_log_message* message) {
    std::string text = message->message;
    const size_t number = text.find(':');
    const size_t end = number == std::string::npos ? number : text.find_first_not_of("0123456789", number + 1);
    if (end != std::string::npos && end > number + 1) text.erase(number, end - number);
    const bool ours = message->tag == std::string(platform::kLogTag);
    const char letter = "??VDIWEFS"[message->priority];
    journal::add(std::string("log ") + letter + (ours ? " " : std::string(" ") + message->tag + " ") + text);
}

}  // namespace

void journal::add(const std::string& line) {
    const std::string aside = sayAside && !beginsWith(line, "log ") ? sayAside() : "";
    const std::lock_guard guard(mutex);
    lines.push_back(line + aside);
}

std::vector<std::string> journal::take(const std::string& kind) {
    const std::lock_guard guard(mutex);
    std::vector<std::string> taken;
    std::copy_if(lines.begin(), lines.end(), std::back_inserter(taken),
                 [&kind](const std::string& line) { return beginsWith(line, kind); });
    lines.clear();
    return taken;
}

void journal::setAside(std::function<std::string()> aside) {
    sayAside = std::move(aside);
}

std::string text(const float* values, size_t count) {
    std::string result;
    for (size_t i = 0; i < count; ++i) {
        char value[32];
        snprintf(value, sizeof value, "%.9g", static_cast<double>(values[i]));
        result += (i == 0 ? "" : " ") + std::string(std::isnan(values[i]) ? "nan" : value);
    }
    return result == "1 0 0 0 1 0 0 0 1" ? "I" : "[" + result + "]";
}

JournaledLog::JournaledLog() {
    __android_log_set_logger(addLogLine);
}

JournaledLog::~JournaledLog() {
    __android_log_set_logger(nullptr);
}

}  // namespace fakes
