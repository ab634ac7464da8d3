// A session on the simulated phone: the real service, the phone around it, and what is told of both.
#pragma once

#include <android/log.h>

#include <chrono>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>

#include "service/DisplayControlImpl.h"
#include "simulator/Phone.h"
#include "tools/picture/Picture.h"
#include "tools/session/Timeline.h"

namespace simulator {

namespace display_control = ::vendor::kov::hardware::display_control::V1_0;

struct SessionOptions {
    std::optional<std::filesystem::path> phone;  // used as it stands; otherwise a fresh copy of the sample phone
    Picture picture;                             // what is on the screen
    std::filesystem::path out;                   // folder for pictures, made for the first one; empty: none is written
    int32_t logPriority = ANDROID_LOG_DEBUG;     // lines below it are suppressed
    // Asked again and again while the script waits, the last time with all of it passed; false ends the wait.
    std::function<bool(std::chrono::milliseconds passed, std::chrono::milliseconds whole)> goOnWaiting;
};

// Carries out the lines of a script and reports to the timeline whatever they cause, in the order in which it happens.
// Time stands still but for the command that waits. Besides what its phone takes of the process, a session takes the
// log, the node observer and libxml2's error handler while it lives, so there is one at a time, used by one thread.
class Session {
public:
    // Throws std::runtime_error when the phone's files cannot be had.
    Session(SessionOptions options, Timeline& timeline);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    // Carries out one line; number is its number in the script. Throws ScriptError when it is wrong or cannot be done.
    void run(std::string_view line, size_t number);

    // What commands work with.
    display_control::implementation::DisplayControlImpl& service() { return displayControl; }
    uint64_t handle() const { return userHandle; }
    void setHandle(uint64_t handle) { userHandle = handle; }
    Phone& phone() { return simulated; }

    void report(const Json& event) { timeline.report(event); }
    // Reports what a served operation answered.
    void answer(display_control::Result result, const Json& parts = Json::object());

    // Lets time pass.
    void wait(std::chrono::milliseconds whole);
    // Writes what a display shows of the picture to a PNG file of that name.
    void writePicture(const std::string& name, uint64_t display);
    // Remembers what the calibration is that the service has just read.
    void noteCalibration();
    // The state of the service and of everything it stands on.
    Json state() const;
    void show() { timeline.report({{"event", "state"}, {"state", state()}}); }

private:
    Json displayState(uint64_t display) const;
    void see(const Event& event);

    Timeline& timeline;
    const Picture picture;
    const std::filesystem::path out;
    const std::function<bool(std::chrono::milliseconds, std::chrono::milliseconds)> goOnWaiting;
    Phone simulated;
    display_control::implementation::DisplayControlImpl displayControl;
    uint64_t userHandle = 0;
    Json calibration = "not read yet";
};

}  // namespace simulator
