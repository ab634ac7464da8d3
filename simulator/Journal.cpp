// SPDX-License-Identifier: Apache-2.0
#include "simulator/Journal.h"

#include <platform/DeviceFiles.h>
#include <platform/Log.h>

#include <charconv>
#include <cstdio>
#include <cstring>
#include <utility>

namespace simulator {

namespace {

Journal* openJournal = nullptr;  // the logger is a plain function, with no place to keep it

// Takes "FUNCTION:LINE: " off the front of message. A line without it keeps its text, and has line 0.
LogLine splitPlace(const __android_log_message& message) {
    const std::string_view text = message.message;
    LogLine line{message.priority, message.tag == nullptr ? "" : message.tag, "", 0, std::string(text)};
    const size_t colon = text.find(':');
    if (colon == std::string_view::npos) return line;
    const char* const end = text.data() + text.size();
    int number = 0;
    const auto [rest, error] = std::from_chars(text.data() + colon + 1, end, number);
    if (error != std::errc() || end - rest < 2 || strncmp(rest, ": ", 2) != 0) return line;
    line.function = text.substr(0, colon);
    line.line = number;
    line.message = rest + 2;
    return line;
}

}  // namespace

void Journal::open() {
    openJournal = this;
    __android_log_set_logger([](const __android_log_message* line) { openJournal->addLogLine(*line); });
    platform::setNodeWriteObserver([this](std::string_view path, std::string_view bytes) {
        add(NodeWrite{std::string(path), std::string(bytes)});
    });
}

void Journal::close() {
    platform::setNodeWriteObserver({});
    __android_log_set_logger(__android_log_stderr_logger);
    openJournal = nullptr;
    observe({});
}

void Journal::observe(Observer newObserver) {
    const platform::Lock lock(mutex);
    observer = std::move(newObserver);
    observed = observer != nullptr;
}

void Journal::add(Event::What what) {
    const platform::Lock lock(mutex);
    if (observer) observer({platform::clock().now(), std::move(what)});
}

void Journal::addLogLine(const __android_log_message& line) {
    if (!isObserved()) return;
    LogLine split = splitPlace(line);
    LightSample sample{};
    const bool isSample = split.function == "workThread" &&
                          sscanf(split.message.c_str(), "avg:%d curr:%d", &sample.mean, &sample.lux) == 2;
    if (isSample) {
        add(sample);
    } else {
        add(std::move(split));
    }
}

}  // namespace simulator
