// SPDX-License-Identifier: Apache-2.0
// What the display-control service means, written a second time and as plainly as possible.
#pragma once

#include <array>
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tests/model/Call.h"
#include "tests/model/Settings.h"

namespace model {

using simulator::ComposerCall;
using simulator::kIdentity;
using Events = std::vector<simulator::Event::What>;

// The colour state of a display.
struct Display {
    Matrix whitePoint = kIdentity;
    Matrix colorCorrection = kIdentity;
    Matrix unlimited = kIdentity;
    Matrix eyeCare = kIdentity;
    int32_t unlimitedLevel = 0;
    int32_t eyeCareLevel = 0;
    Matrix calibWhitePoint = kIdentity;
    Matrix calibColorCorrection = kIdentity;
};

// Of the matrices in effect.
Matrix finalMatrix(const Display& display);
// Over the corners of the colour cube but black, white first.
float largestOutput(const Matrix& m);
Table powerTable(float exponent);

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
// events that cross the library's border, as in the journal.
class Service {
public:
    // Of the phone, only what its composer holds is read. lastHandle is the last one that the process has allocated.
    Service(const Settings& settings, simulator::Phone& simulatedPhone, uint64_t lastHandle)
        : phone(settings), simulated(simulatedPhone), handle(lastHandle) {}

    // Returns the operation's answer.
    std::string call(const Call& call);
    // An event of the light sensor.
    void light(float level);
    // Time passes, its last instant included.
    void pass(int64_t milliseconds);

    Events takeEvents() { return std::exchange(events, {}); }
    int32_t currentScreenMode() const { return screenMode; }
    const std::vector<Display>& displayColors() const { return displays; }

private:
    // The outcome of a call of the composer or the sensors, and whether it had its effect: for a getter, that its
    // callback was called.
    struct Reply {
        simulator::Outcome outcome;
        bool effect;
        bool arrived() const { return outcome.kind != simulator::Outcome::Kind::DEAD_OBJECT; }
        bool isOk() const { return outcome.kind == simulator::Outcome::Kind::ANSWERED && outcome.result == 0; }
    };
    // Around the service.
    void add(simulator::Event::What event) { events.push_back(std::move(event)); }
    template <typename... Parts>
    bool log(int32_t priority, std::string_view function, const Parts&... parts);
    static Reply replyOf(Failure failure, bool isGetter, int32_t result);
    Reply composer(int life, ComposerCall call);
    Reply sensors(SensorOperation operation, std::vector<int64_t> arguments);
    void closed(ClosedFunction function, std::vector<int64_t> arguments, std::vector<double> coefficients = {});
    std::vector<float> closed(ClosedFunction function, std::vector<int64_t> arguments, std::vector<float> buffer,
                              const std::vector<float>& written, ptrdiff_t place);
    int levelOf(int light);
    bool canRead(const Node& node, const char* function, const char* openError, const char* readError);
    const Calibration& readCalibration();

    // The operations, and what several of them do.
    std::string init();
    void applyCalibration();
    void sendCalibratedGamma(const Calibration& file);
    bool knows(uint64_t display) const { return numOfDisplay > 0 && display < static_cast<uint64_t>(numOfDisplay); }
    Display* served(uint64_t display) { return connected && knows(display) ? &displays[display] : nullptr; }
    std::string sendMatrices(uint64_t display, const Matrix& first, const Matrix& last);
    std::string setTable(const Call& call);
    std::string sendTable(ComposerOperation operation, uint64_t display, const Table& table);
    using ValuesOf = std::function<std::string(const simulator::DisplayState& held)>;
    std::string get(ComposerOperation operation, const Call& call, const ValuesOf& valuesOf);
    std::string setLevel(uint64_t display, bool isUnlimited, int32_t level);
    std::string setMode(uint64_t display, int32_t mode);
    std::vector<float> calibrateWhitePoint();
    std::string setCabcSysNode(int32_t level);
    std::string setCabcMode(int32_t mode);
    std::string setFeature(uint64_t display, int32_t feature, int32_t value, int32_t value2);
    std::string setAlad(uint64_t display, bool enable);
    bool enableAlad();
    void disableAlad();
    void wake();
    void takeSample();
    void planSteps(int from, int to);
    void send();
    std::string exclusiveModeEnter();
    std::string exclusiveModeExit();

    const Settings& phone;
    simulator::Phone& simulated;
    Events events;

    std::optional<int> connected;  // the life of the composer that init found
    int32_t numOfDisplay = -1;
    std::vector<std::string> infos;
    std::vector<Display> displays;
    std::vector<float> whitePointParams;
    int32_t screenMode = -1;
    uint64_t handle;
    std::optional<Worker> worker;  // while ALAD is on
    int32_t lux = 0;
    int64_t now = 0;
};

}  // namespace model
