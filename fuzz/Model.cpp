#include "fuzz/Model.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <iterator>
#include <numeric>
#include <utility>

#include "fuzz/WhitePointRule.h"
#include "tests/fakes/Journal.h"

namespace fuzz {

namespace {

constexpr size_t kMatrix = 9;
constexpr size_t kTable = 4096;
constexpr size_t kEyeCare = 38;
constexpr uint32_t kMostDisplays = 1000;  // for which there is memory
constexpr int32_t kSmartEnvironment = 0;
constexpr int32_t kEnhanced = 1;
constexpr int32_t kStandard = 2;
constexpr int kIndoorLux = 300;
constexpr int64_t kPeriod = 1000;  // milliseconds
constexpr int64_t kPause = 20;

std::string form(const char* format, int32_t a, int32_t b) {
    char text[64];
    snprintf(text, sizeof text, format, a, b);
    return text;
}

std::string textOf(const Matrix& matrix) {
    return fakes::text(matrix.data(), matrix.size());
}

int32_t saturated(double value) {
    if (std::isnan(value)) return 0;
    return value >= 2147483647.0 ? INT32_MAX : value <= -2147483648.0 ? INT32_MIN : static_cast<int32_t>(value);
}

template <typename To>
To copyOf(const std::vector<float>& values) {
    To result{};
    std::copy_n(values.begin(), result.size(), result.begin());
    return result;
}

Matrix product(const Matrix& a, const Matrix& b) {
    Matrix result{};
    for (size_t i = 0; i < 3; ++i) {
        for (size_t j = 0; j < 3; ++j) {
            float sum = 0;
            for (size_t k = 0; k < 3; ++k) sum += a[3 * i + k] * b[3 * k + j];
            result[3 * i + j] = sum;
        }
    }
    return result;
}

// Over the corners of the colour cube but black, white first.
float largestOutput(const Matrix& m) {
    constexpr int kCorners[] = {0b111, 0b110, 0b101, 0b011, 0b100, 0b010, 0b001};
    float best = 0;
    for (const int corner : kCorners) {
        const std::array<float, 3> color = {static_cast<float>(corner >> 2), static_cast<float>(corner >> 1 & 1),
                                            static_cast<float>(corner & 1)};
        for (size_t i = 0; i < 3; ++i) {
            float out = m[3 * i] * color[0] + 0;
            out += m[3 * i + 1] * color[1];
            out += m[3 * i + 2] * color[2];
            if (!(best > out)) best = out;
        }
    }
    return best;
}

Table powerTable(float exponent) {
    Table table{};
    for (size_t i = 0; i < table.size(); ++i) {
        table[i] = static_cast<float>(std::pow(static_cast<double>(i) / 4096, static_cast<double>(exponent)));
    }
    return table;
}

}  // namespace

// --- The tone curve ---

void Worker::start(int64_t now) {
    *this = {};
    lux = kIndoorLux;
    wakeAt = now + kPeriod;
}

void Worker::passUntil(int64_t end, Lines& told) {
    while (wakeAt <= end) wake(told);
}

void Worker::wake(Lines& told) {
    if (!inRound) sample();
    inRound = !pending.empty();
    if (inRound) {
        send(pending.front(), told);
        pending.pop_front();
        wakeAt += kPause;
        return;
    }
    curveActive = activeAfter;
    curveLevel = levelAfter;
    wakeAt += kPeriod;
}

void Worker::sample() {
    const int32_t light = mean();
    const int base = levelOf(kIndoorLux);
    activeAfter = curveActive;
    levelAfter = curveLevel;
    curve.fill(0);
    if (!curveActive && light > 8000) {
        activeAfter = true;
        levelAfter = levelOf(light);
        pending.push_back({Kind::START, base});
        if (levelAfter > base) planSteps(base + 1, levelAfter);
    } else if (curveActive && light >= 5000) {
        levelAfter = levelOf(light);
        if (levelAfter > curveLevel) planSteps(curveLevel + 1, levelAfter);
        if (levelAfter < curveLevel) planSteps(curveLevel - 1, levelAfter);
    } else if (curveActive && light >= 0) {
        activeAfter = false;
        levelAfter = 0;
        if (curveLevel >= base) planSteps(curveLevel, base);
        pending.push_back({Kind::OFF, 0});
    }
}

// Of the middle three of the last five samples, the new one among them.
int32_t Worker::mean() {
    if (place == ring.size()) place = 0;
    const int32_t previous = firstSample ? lux : ring[place == 0 ? ring.size() - 1 : place - 1];
    if (firstSample) ring.fill(lux);
    if (!firstSample) ring[place++] = lux;
    firstSample = false;
    const bool bothDim = lux < 5000 && previous < 5000;
    const bool bothBright = lux > 8000 && previous > 8000;
    if (curveActive ? bothDim : bothBright) ring.fill(lux);
    auto sorted = ring;
    std::sort(sorted.begin(), sorted.end());
    return static_cast<int32_t>((int64_t{sorted[1]} + sorted[2] + sorted[3]) / 3);
}

void Worker::planSteps(int from, int to) {
    const int step = to >= from ? 1 : -1;
    for (int level = from; level != to + step; level += step) pending.push_back({Kind::STEP, level});
}

void Worker::send(Message message, Lines& told) {
    if (message.kind == Kind::OFF) {
        told.emplace_back("composer setAladParams(0, 0)");
        return;
    }
    curve[placeOf(message.level)] = message.level;
    std::string line =
        message.kind == Kind::START ? "composer setAladParams(0, 1, 0: 4, 14:" : "composer setAladParams(0, 1, 14:";
    for (const int32_t value : curve) line += value == 0 ? " 0" : " " + std::to_string(value);
    told.push_back(line + ")");
}

// --- What is around ---

Model::Outcome Model::call(const std::string& service, const Faults& faults, const std::string& name,
                           const std::string& arguments) {
    using fakes::Fault;
    told.push_back(service + " " + name + "(" + arguments + ")");
    const auto exact = faults.find(name);
    const Fault fault = exact == faults.end() ? Fault::NONE : exact->second;
    return {fault != Fault::UNREACHABLE && fault != Fault::DIES_AFTER_ANSWER, fault != Fault::SILENT,
            fault == Fault::REFUSES ? fakes::kRefusal : 0};
}

Model::Outcome Model::callComposer(const std::string& name, const std::string& arguments) {
    return call("composer", around.composerFaults, name, arguments);
}

Model::Outcome Model::callSensors(const std::string& name, const std::string& arguments) {
    return call("sensors", around.sensorFaults, name, arguments);
}

// Nothing when the file cannot be read.
const Calibration& Model::calibration() const {
    static const Calibration kNothing;
    const Calibration& file = around.calibrations[around.calibrationFile];
    return file.file == Calibration::File::GOOD ? file : kNothing;
}

Lines Model::takeTold() {
    return std::exchange(told, {});
}

// --- Start and stop ---

Answer Model::init() {
    connected = around.composer;
    if (!connected) return {-1};
    const Outcome count = callComposer("getNumOfDisplay", "");
    const bool counted = count.reached && count.told && count.result == 0 && around.displays <= kMostDisplays;
    numOfDisplay = counted ? static_cast<int32_t>(around.displays) : -1;
    if (!counted) return {-2};

    const auto size = static_cast<size_t>(numOfDisplay);
    if (size > 0) infos.resize(size);
    for (size_t display = 0; display < size; ++display) askDisplayInfo(display);
    displays.resize(size);
    if (size > 0) applyCalibration();
    return {0};
}

void Model::askDisplayInfo(size_t display) {
    const Outcome info = callComposer("getDisplayInfo", std::to_string(display));
    const auto number = [display](size_t last) { return std::to_string(10 * display + last) + " "; };
    infos[display] =
        info.reached && info.told ? number(1) + number(2) + number(3) + "display " + std::to_string(display) : "0 0 0 ";
}

void Model::applyCalibration() {
    const Calibration& file = calibration();
    Display& first = displays[0];
    if (file.whitePoint.size() >= kMatrix) first.calibWhitePoint = copyOf<Matrix>(file.whitePoint);
    if (file.colorCorrection.size() >= kMatrix) first.calibColorCorrection = copyOf<Matrix>(file.colorCorrection);
    hasWhitePointParams = file.whitePointParams.size() >= kMatrix;
    whitePointParams = file.whitePointParams;
    if (file.eyeCare.size() >= kEyeCare) {
        told.push_back(
            form("closed setEyeCareParamsOled(%d, %d)", saturated(file.eyeCare[0]), saturated(file.eyeCare[1])));
        eyeCareGiven.assign(file.eyeCare.begin() + 2, file.eyeCare.begin() + kEyeCare);
    }
    const bool hasEndPoints = file.endPoints.size() >= 2;
    told.push_back(hasEndPoints ? form("closed setParams(%X, %X)", file.endPoints[0], file.endPoints[1])
                                : "closed setParams(FFFFEA, EDFDFF)");
    sendCalibratedGamma(file);
}

void Model::sendCalibratedGamma(const Calibration& file) {
    if (file.tuned.size() >= kTable) {
        sendGamma(0, copyOf<Table>(file.tuned));
    } else if (file.calibrated.size() >= kTable) {
        sendGamma(0, copyOf<Table>(file.calibrated));
    }
}

Answer Model::deInit() {
    connected = false;
    return {};
}

bool Model::knows(uint64_t display) const {
    return numOfDisplay > 0 && display < static_cast<uint64_t>(numOfDisplay);
}

Model::Display* Model::served(uint64_t display) {
    return connected && knows(display) ? &displays[display] : nullptr;
}

Answer Model::getDisplayInfo(uint64_t display) const {
    if (!knows(display)) return {kBadDisplay, {}, "0 0 0 0"};
    return {kOk, {}, infos[display]};
}

// --- Matrices and tables ---

Answer Model::setColorTransformMatrix2(uint64_t display, const Matrix& first, const Matrix& last) {
    if (!connected) return {kFailed};
    const std::string arguments = std::to_string(display) + ", " + textOf(first) + ", " + textOf(last);
    const Outcome set = callComposer("setColorTransformMatrix", arguments);
    matrices[display] = {first, last};
    return {set.reached ? set.result : kFailed};
}

Answer Model::getColorTransformMatrix2(uint64_t display) {
    std::vector<float> zeros(2 * kMatrix, 0.0F);
    if (!connected) return {kFailed, zeros};
    const Outcome got = callComposer("getColorTransformMatrix", std::to_string(display));
    if (!got.reached) return {kFailed, zeros};
    if (!got.told) return {kOk, zeros};
    const auto& [first, last] = matrices[display];
    std::vector<float> both(first.begin(), first.end());
    both.insert(both.end(), last.begin(), last.end());
    return {got.result, both};
}

void Model::sendGamma(uint64_t display, const Table& table) {
    callComposer("setGlobalGammaLut", std::to_string(display));
    gamma[display] = table;
}

Answer Model::setGlobalGammaLut(uint64_t display, const Table& table) {
    if (!connected) return {kFailed};
    sendGamma(display, table);
    return {kOk};
}

Answer Model::setGlobalDeGammaLut(uint64_t display, const Table& table) {
    if (!connected) return {kFailed};
    callComposer("setGlobalDeGammaLut", std::to_string(display));
    deGamma[display] = table;
    return {kOk};
}

Answer Model::setGlobalGamma(uint64_t display, float exponent) {
    return setGlobalGammaLut(display, powerTable(exponent));
}

Answer Model::getTable(const std::string& name, std::map<uint64_t, Table>& tables, uint64_t display) {
    const std::vector<float> zeros(kTable, 0.0F);
    if (!connected) return {kFailed, zeros};
    const Outcome got = callComposer(name, std::to_string(display));
    if (!got.reached) return {kFailed, zeros};
    if (!got.told) return {kOk, zeros};
    const Table& table = tables[display];
    return {got.result, {table.begin(), table.end()}};
}

// --- Colour temperature and screen modes ---

void Model::sendFinalMatrix(uint64_t display) {
    const Display& d = displays[display];
    Matrix last = product(d.eyeCare, product(d.unlimited, product(d.whitePoint, d.colorCorrection)));
    const float largest = largestOutput(last);
    if (static_cast<double>(largest) > 1e-6) {
        for (float& element : last) element /= largest;
    }
    setColorTransformMatrix2(display, kIdentity, last);
}

Answer Model::setUnlimitedCT(uint64_t display, int32_t level) {
    Display* const d = served(display);
    if (d == nullptr) return {kFailed};
    told.push_back("closed getUnlimitedCTParams(" + std::to_string(level) + ", [1 1 1])");
    d->unlimitedLevel = level;
    for (size_t i = 0; i < 3; ++i) d->unlimited[4 * i] = i < around.gains.size() ? around.gains[i] : 1;
    sendFinalMatrix(display);
    return {kOk};
}

Answer Model::setEyeCareCT(uint64_t display, int32_t level) {
    Display* const d = served(display);
    if (d == nullptr) return {kFailed};
    told.push_back("closed getEyeCareCoeffOled(" + std::to_string(level) + ", I)");
    d->eyeCareLevel = level;
    d->eyeCare = kIdentity;
    std::copy(around.coefficients.begin(), around.coefficients.end(), d->eyeCare.begin());
    sendFinalMatrix(display);
    return {kOk};
}

Answer Model::getUnlimitedCT(uint64_t display) const {
    if (!knows(display)) return {kFailed, {}, "0"};
    return {kOk, {}, std::to_string(displays[display].unlimitedLevel)};
}

Answer Model::getEyeCareCT(uint64_t display) const {
    if (!knows(display)) return {kFailed, {}, "0"};
    return {kOk, {}, std::to_string(displays[display].eyeCareLevel)};
}

void Model::enterMode(uint64_t display, int32_t mode, int32_t cabcLevel) {
    sendFinalMatrix(display);
    screenMode = mode;
    setCabcSysNode(cabcLevel);
}

Answer Model::setStandardMode(uint64_t display) {
    Display* const d = served(display);
    if (d == nullptr) return {kFailed};
    d->whitePoint = d->calibWhitePoint;
    d->colorCorrection = d->calibColorCorrection;
    enterMode(display, kStandard, 0);
    return {kOk};
}

Answer Model::setEnhanceScreenMode(uint64_t display) {
    Display* const d = served(display);
    if (d == nullptr) return {kFailed};
    d->whitePoint = d->colorCorrection = kIdentity;
    enterMode(display, kEnhanced, 0);
    return {kOk};
}

Answer Model::setSmartEnvironmentMode(uint64_t display) {
    Display* const d = served(display);
    if (d == nullptr) return {kFailed};
    told.emplace_back("closed algorithm made");
    calibrateWhitePoint(*d);
    enterMode(display, kSmartEnvironment, 1);
    told.emplace_back("closed algorithm gone");
    return {kOk};
}

void Model::calibrateWhitePoint(Display& display) {
    whiteGiven = {0.28F, 0.30F, {0.66F, 0.295F, 0.15F, 0.334F, 0.656F, 0.055F, 0, 0, 0}, 1, 1, 1};
    if (hasWhitePointParams) std::copy_n(whitePointParams.begin(), kMatrix, whiteGiven.params);
    if (const auto white = around.whitePoint ? whitePointOf(*around.whitePoint) : std::nullopt) {
        whiteGiven.whiteX = static_cast<float>(white->first * 0.001);
        whiteGiven.whiteY = static_cast<float>(white->second * 0.001);
    }
    told.emplace_back("closed WhitePointCalibrate");
    display.whitePoint = display.colorCorrection = kIdentity;
    for (size_t i = 0; i < around.whiteGains.size(); ++i) display.whitePoint[4 * i] = around.whiteGains[i];
}

// --- Backlight control and features ---

Answer Model::setCabcSysNode(int32_t level) {
    if (!around.cabcNode) return {kFailed};
    const auto digit = static_cast<uint8_t>(static_cast<uint32_t>(level) + 48);
    told.push_back(form("node lcd_cabc_mode %02x %02x", digit, '\n'));
    cabc.replace(0, 2, {static_cast<char>(digit), '\n'});
    return {kOk};
}

Answer Model::setCabcMode(int32_t mode) {
    if (screenMode != kSmartEnvironment) return {kOk};
    const std::map<int32_t, int32_t> kLevels = {{0, 0}, {1, 1}, {2, 1}, {3, 2}, {4, 3}};
    const auto level = kLevels.find(mode);
    return level == kLevels.end() ? Answer{kFailed} : setCabcSysNode(level->second);
}

Answer Model::setFeature(uint64_t display, int32_t feature, int32_t value) {
    if (feature == 3) return setEyeCareCT(display, value);
    if (feature == 7) return setCabcMode(value);
    if (feature == 23) return setUnlimitedCT(display, value);
    if (feature < 0 || feature > 2) return {kFailed};
    if (feature == 0) setSmartEnvironmentMode(display);
    if (feature == 1) setEnhanceScreenMode(display);
    if (feature == 2) setStandardMode(display);
    return {kOk};
}

Answer Model::setMiscFeature(uint64_t display, int32_t feature, const std::vector<double>& values) {
    return values.size() == 2 ? setFeature(display, feature, saturated(values[0])) : Answer{kFailed};
}

// --- Ambient light ---

Answer Model::setAlad(uint64_t display, uint32_t enable) {
    if (display != 0) return {kFailed};
    if (enable == 0) {
        stopAlad();
        return {kOk};
    }
    if (aladOn) return {kOk};
    aladOn = connected && enableAlad();
    return {aladOn ? kOk : kFailed};
}

bool Model::enableAlad() {
    const auto isOk = [](const Outcome& outcome) { return outcome.reached && outcome.result == 0; };
    if (!around.sensors) return false;
    const Outcome sensor = callSensors("getDefaultSensor", "5");
    if (!isOk(sensor) || !sensor.told) return false;
    const Outcome queue = callSensors("createEventQueue", "");
    if (!isOk(queue) || !queue.told || !around.queue) return false;
    if (!isOk(callSensors("enableSensor", "3, 1000000, 0"))) return false;
    worker.start(now);
    return true;
}

void Model::stopAlad() {
    if (!aladOn) return;
    callSensors("disableSensor", "3");
    now = worker.endedAt(now);
    aladOn = false;
    callComposer("setAladParams", "0, 0");
}

void Model::light(float lux) {
    worker.lux = saturated(static_cast<double>(lux));
}

void Model::pass(int64_t milliseconds) {
    now += milliseconds;
    if (aladOn) worker.passUntil(now, told);
}

// --- Exclusive mode ---

Answer Model::exclusiveModeEnter() {
    if (!connected) return {kFailed};
    callComposer("setExclusiveMode", "0, 1");
    setColorTransformMatrix2(0, kIdentity, kIdentity);
    setGlobalGamma(0, 1.0F / 2.2F);
    stopAlad();
    setCabcSysNode(0);
    return {kOk};
}

Answer Model::exclusiveModeExit() {
    if (!connected) return {kFailed};
    callComposer("setExclusiveMode", "0, 0");
    const Calibration& file = calibration();
    if (knows(0)) {
        if (file.whitePoint.size() >= kMatrix) displays[0].whitePoint = copyOf<Matrix>(file.whitePoint);
        if (file.colorCorrection.size() >= kMatrix) displays[0].colorCorrection = copyOf<Matrix>(file.colorCorrection);
        sendFinalMatrix(0);
    }
    sendCalibratedGamma(file);
    return {kOk};
}

}  // namespace fuzz
