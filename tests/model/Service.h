// SPDX-License-Identifier: Apache-2.0
// What the display-control service means, written a second time and as plainly as possible.
#pragma once

#include <array>
#include <cstdint>
#include <deque>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tests/model/Call.h"
#include "tests/model/Settings.h"

namespace model {

using Lines = std::vector<std::string>;

// The colour state of a display.
struct Display {
    Matrix whitePoint = simulator::kIdentity;
    Matrix colorCorrection = simulator::kIdentity;
    Matrix unlimited = simulator::kIdentity;
    Matrix eyeCare = simulator::kIdentity;
    int32_t unlimitedLevel = 0;
    int32_t eyeCareLevel = 0;
    Matrix calibWhitePoint = simulator::kIdentity;
    Matrix calibColorCorrection = simulator::kIdentity;
};

// The worker of the ambient-light adaptive display. Times in milliseconds.
struct Worker {
    enum class Message { START, STEP, OFF };

    int composer;  // the life of the one that it was given
    int64_t wakesAt;
    int baseLevel;
    bool isSending = false;  // the messages of a sample; otherwise it waits for the next sample
    std::deque<std::pair<Message, int>> messages = {};  // with their levels
    bool hasStarted = false;                            // the last message sent is a start message
    std::array<int32_t, 256> curve{};
    std::deque<int32_t> samples = {};  // the last five, the latest first; empty before the first one
    int32_t mean = 0;
    bool isActive = false;  // the tone curve is on
    int level = 0;          // of the tone curve
};

// The service on a phone of these settings, which may change between calls. Each call and each step of time adds the
// events that cross the library's border, as the journal's lines.
class Service {
public:
    // lastHandle is the last one that the process has allocated.
    Service(const Settings& phoneSettings, uint64_t lastHandle);

    // Returns the operation's answer.
    std::string call(const Call& call);
    // To be called when the settings have changed.
    void phoneChanged();
    // An event of the light sensor.
    void light(float level);
    // Time passes, its last instant included.
    void pass(int64_t milliseconds);

    Lines takeEvents() { return std::exchange(events, {}); }
    int32_t currentScreenMode() const { return screenMode; }
    const std::vector<Display>& displayColors() const { return displays; }

private:
    // What became of a call of the composer or the sensors, and whether it had its effect: for a getter, that its
    // callback was called.
    struct Reply {
        simulator::Outcome outcome;
        bool effect;
        bool arrived() const { return outcome.kind != simulator::Outcome::Kind::DEAD_OBJECT; }
        bool isOk() const { return outcome.kind == simulator::Outcome::Kind::ANSWERED && outcome.result == 0; }
    };
    // What the composer holds for a display.
    struct Held {
        Matrix first, last;
        Table gamma, deGamma;
    };

    void add(const simulator::Event::What& event) { events.push_back(textOf(event)); }
    void log(int32_t priority, const std::string& function, const std::string& message);
    void closed(simulator::ClosedCall call);
    static Reply replyOf(Failure failure, bool isGetter, int32_t result);
    Reply composer(int life, simulator::ComposerCall call);
    Reply sensors(SensorOperation operation, std::vector<int64_t> arguments);
    const Held& heldFor(uint64_t display) const;
    bool canRead(const Node& node, const char* function, const char* openError, const char* readError);
    const Calibration& readCalibration();

    std::string init(const Call& call);
    std::string deInit(const Call& call);
    std::string allocUserHandle(const Call& call);
    std::string freeUserHandle(const Call& call);
    std::string getNumOfDisplay(const Call& call);
    std::string getDisplayInfo(const Call& call);
    std::string setColorTransformMatrix(const Call& call);
    std::string setColorTransformMatrix2(const Call& call);
    std::string getColorTransformMatrix(const Call& call);
    std::string getColorTransformMatrix2(const Call& call);
    std::string setTable(const Call& call);
    std::string getTable(const Call& call);
    std::string setGlobalGamma(const Call& call);
    std::string setUnlimitedCT(const Call& call);
    std::string setEyeCareCT(const Call& call);
    std::string getLevel(const Call& call);
    std::string setStandardMode(const Call& call);
    std::string setEnhanceScreenMode(const Call& call);
    std::string setSmartEnvironmentMode(const Call& call);
    std::string setCabcSysNode(const Call& call);
    std::string setCabcMode(const Call& call);
    std::string setFeature(const Call& call);
    std::string setMiscFeature(const Call& call);
    std::string getMiscFeature(const Call& call);
    std::string setAlad(const Call& call);
    std::string isAladEnable(const Call& call);
    std::string exclusiveModeEnter(const Call& call);
    std::string exclusiveModeExit(const Call& call);

    bool knows(uint64_t display) const { return numOfDisplay > 0 && display < static_cast<uint64_t>(numOfDisplay); }
    Display* served(uint64_t display) { return connected && knows(display) ? &displays[display] : nullptr; }
    void applyCalibration();
    void sendCalibratedGamma(const Calibration& calibration);
    int32_t sendMatrices(uint64_t display, const Matrix& first, const Matrix& last);
    std::string get(ComposerOperation operation, const Call& call, const std::string& values, const std::string& zeros);
    std::string sendTable(ComposerOperation operation, uint64_t display, const Table& table);
    std::string enterMode(uint64_t display, int32_t mode, const Matrix& whitePoint, const Matrix& colorCorrection);
    void sendFinalMatrix(uint64_t display);
    bool enableAlad();
    void disableAlad();
    void wake();
    void takeSample();
    void planSteps(int from, int to);
    void send();
    void rampUp();
    int levelOf(int light);

    const Settings& phone;
    std::map<uint64_t, Held> held;  // by display
    int composerLife;               // of the composer that holds them
    Lines events;

    std::optional<int> connected;  // the life of the composer that init found
    int32_t numOfDisplay = -1;
    Lines infos;
    std::vector<Display> displays;
    std::vector<float> whitePointParams;
    int32_t screenMode = -1;
    uint64_t handle;
    std::optional<Worker> worker;  // while ALAD is on
    int32_t lux = 0;
    int64_t now = 0;
};

}  // namespace model
