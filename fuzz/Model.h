// The service as its interface promises it, told once more and as plainly as it goes: what the fuzzer compares with.
#pragma once

#include <closed/displayppalgorithm.h>

#include <cstdint>
#include <deque>
#include <map>
#include <string>
#include <vector>

#include "fuzz/Surroundings.h"

namespace fuzz {

using Lines = std::vector<std::string>;
using Matrix = std::array<float, 9>;
constexpr Matrix kIdentity = {1, 0, 0, 0, 1, 0, 0, 0, 1};

// What an operation answered: a Result or another number, the floats of its matrices or table, and its text.
struct Answer {
    int64_t result = 0;
    std::vector<float> values = {};
    std::string text = {};
};
constexpr int64_t kOk = 0;
constexpr int64_t kBadDisplay = -3;
constexpr int64_t kFailed = -5;

// The tone curve's worker: a sample a second, and a pause of 20 ms after each message. Times in milliseconds.
class Worker {
public:
    void start(int64_t now);
    // Lets time pass up to end; told gets the journal lines of the messages.
    void passUntil(int64_t end, Lines& told);
    // When it ends, told to at that time: at once, or after the pause of the message in flight.
    int64_t endedAt(int64_t now) const { return inRound ? wakeAt : now; }

    int32_t lux = 0;

private:
    enum class Kind { START, STEP, OFF };
    struct Message {
        Kind kind;
        int level;
    };

    void wake(Lines& told);
    void sample();
    int32_t mean();
    void planSteps(int from, int to);
    void send(Message message, Lines& told);

    int64_t wakeAt = 0;
    bool inRound = false;  // the messages of a sample are on their way
    std::deque<Message> pending;
    bool curveActive = false;
    int curveLevel = 0;
    bool activeAfter = false;  // the round
    int levelAfter = 0;
    bool firstSample = true;
    std::array<int32_t, 5> ring{};
    size_t place = 0;  // in the ring, 5 for 0
    std::array<int32_t, 256> curve{};
};

// Served operations have the service's names and leave out the handle. Each adds to told() what the composer, the
// sensors, the closed libraries and the backlight node are told meanwhile, as the fakes journal it.
class Model {
public:
    // handle is the last one that the process has handed out.
    Model(const Surroundings& surroundings, uint64_t handle) : around(surroundings), lastHandle(handle) {}

    Answer init();
    Answer deInit();
    Answer allocUserHandle() { return {kOk, {}, std::to_string(++lastHandle)}; }
    Answer getNumOfDisplay() const { return {kOk, {}, std::to_string(static_cast<uint32_t>(numOfDisplay))}; }
    Answer getDisplayInfo(uint64_t display) const;

    Answer setColorTransformMatrix2(uint64_t display, const Matrix& first, const Matrix& last);
    Answer getColorTransformMatrix2(uint64_t display);
    Answer setGlobalGammaLut(uint64_t display, const Table& table);
    Answer setGlobalDeGammaLut(uint64_t display, const Table& table);
    Answer getGlobalGammaLut(uint64_t display) { return getTable("getGlobalGammaLut", gamma, display); }
    Answer getGlobalDeGammaLut(uint64_t display) { return getTable("getGlobalDeGammaLut", deGamma, display); }
    Answer setGlobalGamma(uint64_t display, float exponent);

    Answer setUnlimitedCT(uint64_t display, int32_t level);
    Answer setEyeCareCT(uint64_t display, int32_t level);
    Answer getUnlimitedCT(uint64_t display) const;
    Answer getEyeCareCT(uint64_t display) const;
    Answer setStandardMode(uint64_t display);
    Answer setEnhanceScreenMode(uint64_t display);
    Answer setSmartEnvironmentMode(uint64_t display);
    Answer setCabcSysNode(int32_t level);
    Answer setCabcMode(int32_t mode);
    Answer setFeature(uint64_t display, int32_t feature, int32_t value);
    Answer setMiscFeature(uint64_t display, int32_t feature, const std::vector<double>& values);

    Answer setAlad(uint64_t display, uint32_t enable);
    Answer isAladEnable() const { return {aladOn ? 1 : 0}; }
    Answer exclusiveModeEnter();
    Answer exclusiveModeExit();

    void light(float lux);
    void pass(int64_t milliseconds);

    Lines takeTold();
    int32_t currentScreenMode() const { return screenMode; }
    const std::map<uint64_t, Table>& gammaTables() const { return gamma; }
    const std::map<uint64_t, Table>& deGammaTables() const { return deGamma; }
    // What the closed libraries were given last.
    const android::WhitePointCalibrateParam& whitePoint() const { return whiteGiven; }
    const std::vector<double>& eyeCareCoeffs() const { return eyeCareGiven; }
    const std::string& cabcText() const { return cabc; }
    void renewCabcNode(const std::string& text) { cabc = text; }

private:
    struct Display {
        Matrix whitePoint = kIdentity;
        Matrix colorCorrection = kIdentity;
        Matrix unlimited = kIdentity;
        Matrix eyeCare = kIdentity;
        Matrix calibWhitePoint = kIdentity;
        Matrix calibColorCorrection = kIdentity;
        int32_t unlimitedLevel = 0;
        int32_t eyeCareLevel = 0;
    };
    // What became of a call of a service around.
    struct Outcome {
        bool reached;  // the transport worked
        bool told;     // the callback was called
        int32_t result;
    };

    Outcome callComposer(const std::string& name, const std::string& arguments);
    Outcome callSensors(const std::string& name, const std::string& arguments);
    Outcome call(const std::string& service, const Faults& faults, const std::string& name,
                 const std::string& arguments);

    bool knows(uint64_t display) const;
    Display* served(uint64_t display);
    const Calibration& calibration() const;
    void askDisplayInfo(size_t display);
    void applyCalibration();
    void sendGamma(uint64_t display, const Table& table);
    void sendCalibratedGamma(const Calibration& file);
    Answer getTable(const std::string& name, std::map<uint64_t, Table>& tables, uint64_t display);
    void sendFinalMatrix(uint64_t display);
    void enterMode(uint64_t display, int32_t mode, int32_t cabcLevel);
    void calibrateWhitePoint(Display& display);
    bool enableAlad();
    void stopAlad();

    const Surroundings& around;
    Lines told;

    bool connected = false;
    int32_t numOfDisplay = -1;
    std::vector<std::string> infos;
    std::vector<Display> displays;
    bool hasWhitePointParams = false;
    std::vector<float> whitePointParams;
    int32_t screenMode = -1;
    bool aladOn = false;
    Worker worker;
    int64_t now = 0;  // milliseconds
    uint64_t lastHandle;

    // What the composer, the node and the closed libraries hold.
    std::map<uint64_t, std::pair<Matrix, Matrix>> matrices;
    std::map<uint64_t, Table> gamma;
    std::map<uint64_t, Table> deGamma;
    std::string cabc;
    android::WhitePointCalibrateParam whiteGiven{};
    std::vector<double> eyeCareGiven;
};

}  // namespace fuzz
