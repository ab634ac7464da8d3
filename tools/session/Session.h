// SPDX-License-Identifier: Apache-2.0
// A session on the simulated phone: the real service, the phone around it, and what happens to both.
#pragma once

#include <android/log.h>

#include <chrono>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "simulator/Phone.h"
#include "tools/picture/Picture.h"
#include "tools/session/ServedLibrary.h"
#include "tools/session/Timeline.h"

namespace simulator {

struct SessionOptions {
    std::optional<std::filesystem::path> phone;  // used where it is; otherwise a fresh copy of the sample phone
    Picture picture;                             // what is on the screen
    std::filesystem::path out;                   // folder for pictures, made for the first one; empty: none is written
    int32_t logPriority = ANDROID_LOG_DEBUG;     // lines below it are suppressed
    // Called again and again while the script waits, the last time with all of it passed; false ends the wait.
    std::function<bool(std::chrono::milliseconds passed, std::chrono::milliseconds whole)> goOnWaiting;
};

// Carries out the lines of a script and reports everything that they cause to the timeline, in the order in which it
// happens. Time passes only in the command that waits. Besides what its Phone owns while it lives, a session owns the
// log's minimum priority and libxml2's error handler; so there is one at a time, used by one thread.
class Session {
public:
    using Values = std::vector<std::pair<std::string, Value>>;

    // Throws std::runtime_error when the phone's files cannot be had.
    Session(SessionOptions options, Timeline& timeline);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    // Carries out one line; number is its number in the script. Throws ScriptError when it is wrong or cannot be done.
    void run(std::string_view line, size_t number);

    // What commands work with.
    display_control::IDisplayControl& service() { return served.client(); }
    display_control::implementation::DisplayControlImpl& library() { return served.library(); }
    uint64_t handle() const { return userHandle; }
    void setHandle(uint64_t handle) { userHandle = handle; }
    Phone& phone() { return simulated; }

    void report(SessionEvent::What event);
    // Reports what the operation of the line that runs answered.
    void answer(Value result, Values values = {});
    void answer(display_control::Result result, Values values = {});

    // Lets time pass.
    void wait(std::chrono::milliseconds whole);
    // Writes what a display shows of the picture to a PNG file of that name.
    void writePicture(const std::string& name, uint64_t display);
    // Remembers what the calibration is that the service has just read.
    void noteCalibration();
    State state() const;
    void show() { report(state()); }

private:
    State displayState(uint64_t display) const;

    Timeline& timeline;
    const Picture picture;
    const std::filesystem::path out;
    const std::function<bool(std::chrono::milliseconds, std::chrono::milliseconds)> goOnWaiting;
    Phone simulated;
    ServedLibrary served;
    uint64_t userHandle = 0;
    std::string operation;  // the command that runs
    State calibration;      // empty until it is read
    const XmlMessageHandler xmlMessages{[this](const XmlMessage& message) { report(message); }};
};

}  // namespace simulator
