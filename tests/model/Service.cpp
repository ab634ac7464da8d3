// SPDX-License-Identifier: Apache-2.0
#include "tests/model/Service.h"

#include <platform/Log.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <sstream>

namespace model {

namespace {

using simulator::matrixOf;
using simulator::tableOf;
using simulator::valueText;
using Operation = ComposerOperation;
using Ended = simulator::Outcome::Kind;

constexpr int32_t kDebug = ANDROID_LOG_DEBUG;
constexpr int32_t kInfo = ANDROID_LOG_INFO;
constexpr int32_t kError = ANDROID_LOG_ERROR;
constexpr uint32_t kMostDisplays = 1024;
constexpr int32_t kSmartEnvironment = 0;
constexpr int32_t kEnhanced = 1;
constexpr int32_t kStandard = 2;
constexpr size_t kMatrix = 9;
constexpr size_t kEyeCare = 38;
constexpr size_t kTable = 4096;

struct Three {
    const float* f;
};
std::ostream& operator<<(std::ostream& line, const Three& values) {
    return line << values.f[0] << " " << values.f[1] << " " << values.f[2];
}

// As printf's %d, %f and %s.
template <typename... Parts>
std::string text(const Parts&... parts) {
    std::ostringstream line;
    line << std::fixed;
    (line << ... << parts);
    return line.str();
}

std::string hexadecimal(int32_t color) {
    char digits[16];
    snprintf(digits, sizeof digits, "%.8X", static_cast<unsigned>(color));
    return digits;
}

int32_t saturated(double value) {
    if (std::isnan(value)) return 0;
    return value >= 2147483647.0 ? INT32_MAX : value <= -2147483648.0 ? INT32_MIN : static_cast<int32_t>(value);
}

template <typename Operation>
Failure failureOf(const std::map<Operation, Failure>& failures, Operation operation) {
    const auto found = failures.find(operation);
    return found == failures.end() ? Failure::NONE : found->second;
}

Matrix product(const Matrix& a, const Matrix& b) {
    Matrix result{};
    for (size_t i = 0; i < 3; ++i) {
        for (size_t j = 0; j < 3; ++j) {
            for (size_t k = 0; k < 3; ++k) result[3 * i + j] += a[3 * i + k] * b[3 * k + j];
        }
    }
    return result;
}

// Calculated once for each exponent: it takes long, and sessions have few.
const Table& knownPowerTable(float exponent) {
    static std::map<uint32_t, Table> tables;  // by the exponents' bits
    uint32_t bits = 0;
    memcpy(&bits, &exponent, sizeof bits);
    Table& table = tables[bits];
    if (table == nullptr) table = powerTable(exponent);
    return table;
}

}  // namespace

Matrix finalMatrix(const Display& d) {
    Matrix last = product(d.eyeCare, product(d.unlimited, product(d.whitePoint, d.colorCorrection)));
    const float largest = largestOutput(last);
    if (static_cast<double>(largest) > 1e-6) {
        for (float& element : last) element /= largest;
    }
    return last;
}

float largestOutput(const Matrix& m) {
    float best = 0;
    for (const int corner : {0b111, 0b110, 0b101, 0b011, 0b100, 0b010, 0b001}) {
        for (size_t i = 0; i < 3; ++i) {
            float out = 0;
            for (size_t j = 0; j < 3; ++j) out += m[3 * i + j] * static_cast<float>(corner >> (2 - j) & 1);
            if (!(best > out)) best = out;
        }
    }
    return best;
}

Table powerTable(float exponent) {
    std::array<float, kTable> table{};
    for (size_t i = 0; i < table.size(); ++i)
        table[i] = static_cast<float>(std::pow(static_cast<double>(i) / 4096, static_cast<double>(exponent)));
    return tableOf(table.data());
}

std::string Service::call(const Call& c) {
    const std::string& operation = c.operation;
    const auto is = [&operation](std::string_view name) { return operation == name; };

    if (is("init")) return init();
    if (is("deInit")) return connected.reset(), "";
    if (is("allocUserHandle")) return log(kInfo, operation, ++handle), text("OK ", handle);
    if (is("freeUserHandle")) return log(kInfo, operation, kHandle), "OK";
    if (is("getNumOfDisplay")) return log(kInfo, operation, kHandle), "OK " + text(static_cast<uint32_t>(numOfDisplay));
    if (is("getDisplayInfo"))
        return log(kInfo, operation, kHandle), knows(c.display) ? "OK " + infos[c.display] : "BAD_DISPLAY 0 0 0 \"0\"";
    if (is("setColorTransformMatrix")) {
        log(kDebug, operation, kHandle);
        for (const size_t i : {0U, 1U, 2U}) log(kDebug, operation, operation, i, " ", Three{&c.last[3 * i]});
        return sendMatrices(c.display, kIdentity, c.last);
    }
    if (is("setColorTransformMatrix2")) {
        log(kDebug, operation, kHandle);
        for (const size_t i : {0U, 3U, 6U}) log(kDebug, operation, "first ", Three{&c.first[i]});
        for (const size_t i : {0U, 3U, 6U}) log(kDebug, operation, "last ", Three{&c.last[i]});
        return sendMatrices(c.display, c.first, c.last);
    }
    const auto matrix = [](const auto& m) { return valueText(matrixOf(m.elements.data())); };
    const auto table = [](const auto& t) { return valueText(tableOf(t.entries.data())); };
    if (is("getColorTransformMatrix"))
        return get(Operation::GET_COLOR_TRANSFORM_MATRIX, c, [&](auto& s) { return matrix(s.first); });
    if (is("getColorTransformMatrix2"))
        return get(Operation::GET_COLOR_TRANSFORM_MATRIX, c,
                   [&](auto& s) { return matrix(s.first) + " " + matrix(s.last); });
    if (is("setGlobalGammaLut") || is("setGlobalDeGammaLut")) return setTable(c);
    if (is("getGlobalGammaLut"))
        return get(Operation::GET_GLOBAL_GAMMA_LUT, c, [&](auto& s) { return table(s.gamma); });
    if (is("getGlobalDeGammaLut"))
        return get(Operation::GET_GLOBAL_DE_GAMMA_LUT, c, [&](auto& s) { return table(s.deGamma); });
    if (is("setGlobalGamma")) {
        log(kDebug, operation, kHandle);
        log(kInfo, "", c.exponent);
        return sendTable(Operation::SET_GLOBAL_GAMMA_LUT, c.display, knownPowerTable(c.exponent));
    }
    if (is("setUnlimitedCT")) return setLevel(c.display, true, c.number);
    if (is("setEyeCareCT")) return setLevel(c.display, false, c.number);
    if (is("getUnlimitedCT")) return knows(c.display) ? "OK " + text(displays[c.display].unlimitedLevel) : "FAILED 0";
    if (is("getEyeCareCT")) return knows(c.display) ? "OK " + text(displays[c.display].eyeCareLevel) : "FAILED 0";
    if (is("setStandardMode")) return setMode(c.display, kStandard);
    if (is("setEnhanceScreenMode")) return setMode(c.display, kEnhanced);
    if (is("setSmartEnvironmentMode")) return setMode(c.display, kSmartEnvironment);
    if (is("setCabcSysNode")) return setCabcSysNode(c.number);
    if (is("setCabcMode")) return setCabcMode(c.number);
    if (is("setFeature")) return setFeature(c.display, c.number, c.value, c.value2);
    if (is("setMiscFeature")) {
        const bool isDone = c.values.size() == 2 &&
                            setFeature(c.display, c.number, saturated(c.values[0]), saturated(c.values[1])) == "0";
        return isDone ? "OK 0 values" : "FAILED 0 values";
    }
    if (is("getMiscFeature")) return "FAILED 0 values";
    if (is("IsAladEnable")) return worker ? "1" : "0";
    log(kInfo, operation, kHandle, " ", c.number);
    if (is("setAlad")) return setAlad(c.display, c.number != 0);
    if (is("exclusiveModeEnter")) return exclusiveModeEnter();
    return exclusiveModeExit();
}

// --- Around the service ---

template <typename... Parts>
bool Service::log(int32_t priority, std::string_view function, const Parts&... parts) {
    if (!platform::isLogged(priority)) return false;
    add(simulator::LogLine{priority, "KovDisplayControlService", std::string(function), 0, text(parts...)});
    return false;
}

Service::Reply Service::replyOf(Failure failure, bool isGetter, int32_t result) {
    const bool isDead = failure == Failure::TRANSPORT_BEFORE || failure == Failure::TRANSPORT_AFTER;
    const bool isSilent = isGetter && failure == Failure::NO_CALLBACK;
    const bool isRefused = !isGetter && failure == Failure::REFUSED;
    const Ended kind = isDead ? Ended::DEAD_OBJECT : isSilent ? Ended::NO_CALLBACK : Ended::ANSWERED;
    return {{kind, result}, failure != Failure::TRANSPORT_BEFORE && !isSilent && !isRefused};
}

Service::Reply Service::composer(int life, ComposerCall call) {
    constexpr int32_t kBadDisplay = -3;
    const bool isGetter = !call.first && !call.enable && call.table == nullptr;
    const Failure failure =
        life == phone.composerLife ? failureOf(phone.composerFailures, call.operation) : Failure::TRANSPORT_BEFORE;
    const bool isKnown = !call.display || *call.display < phone.displays;
    const Reply reply = replyOf(failure, isGetter, failure == Failure::REFUSED ? kRefusal : isKnown ? 0 : kBadDisplay);
    call.outcome = reply.outcome;
    add(std::move(call));
    return reply;
}

Service::Reply Service::sensors(SensorOperation operation, std::vector<int64_t> arguments) {
    constexpr int32_t kInvalidOperation = 6;
    const bool isGetter =
        operation == SensorOperation::GET_DEFAULT_SENSOR || operation == SensorOperation::CREATE_EVENT_QUEUE;
    const Failure failure = failureOf(phone.sensorFailures, operation);
    const Reply reply = replyOf(failure, isGetter, failure == Failure::REFUSED ? kInvalidOperation : 0);
    add(simulator::SensorCall{operation, std::move(arguments), reply.outcome});
    return reply;
}

void Service::closed(ClosedFunction function, std::vector<int64_t> arguments, std::vector<double> coefficients) {
    add(simulator::ClosedCall{
        function, std::move(arguments), std::move(coefficients), {}, {}, phone.resultOf(function)});
}

// Of a function that writes to its buffer from place on. Returns the buffer.
std::vector<float> Service::closed(ClosedFunction function, std::vector<int64_t> arguments, std::vector<float> buffer,
                                   const std::vector<float>& written, ptrdiff_t place) {
    const std::vector<float> before = buffer;
    std::copy(written.begin(), written.end(), buffer.begin() + place);
    add(simulator::ClosedCall{function, std::move(arguments), {}, before, buffer, phone.resultOf(function)});
    return buffer;
}

int Service::levelOf(int light) {
    add(simulator::ClosedCall{ClosedFunction::GET_AGTM_LEVEL, {light}, {}, {}, {}, phone.levelOf(light)});
    return phone.levelOf(light);
}

// False, with the error logged, if the node cannot be opened or delivers no byte.
bool Service::canRead(const Node& node, const char* function, const char* openError, const char* readError) {
    if (node.kind == Kind::FILE && !node.text.empty()) return true;
    return log(kError, function, node.kind == Kind::MISSING ? openError : readError);
}

const Calibration& Service::readCalibration() {
    static const Calibration kNothing;
    const bool hasPanel = canRead(phone.panel, "parser", "open panel name node error", "read panel name error");
    const std::string panel = hasPanel ? phone.panel.text.substr(0, 128).c_str() : "";
    size_t file = 0;
    if (panel == "dornel R7TK 35 02 0a hd+ video dsi panel\n") file = 1;
    if (panel == "dornel R7TK 43 03 0b hd+ video dsi panel\n") file = 2;
    log(kDebug, "parser", "panel xml ", kCalibrationPaths[file]);
    const Calibration& calibration = phone.calibrations[file];
    if (calibration.kind == Kind::FILE && calibration.isWellFormed) return calibration;
    log(kError, "parser", calibration.kind == Kind::MISSING ? "access error!" : "xmlParseFile error!");
    return kNothing;
}

// --- Start ---

std::string Service::init() {
    connected = phone.composer ? std::optional(phone.composerLife) : std::nullopt;
    if (!connected) return log(kError, "init", "get composer ext service error!"), "-1";
    const bool isCounted = composer(*connected, {Operation::GET_NUM_OF_DISPLAY}).isOk();
    numOfDisplay = isCounted && phone.displays <= kMostDisplays ? static_cast<int32_t>(phone.displays) : -1;
    if (numOfDisplay < 0) return log(kError, "init", "getNumOfDisplay error!"), "-2";
    infos.resize(phone.displays);
    for (uint64_t display = 0; display < phone.displays; ++display) {
        const Reply reply = composer(*connected, {Operation::GET_DISPLAY_INFO, display});
        if (reply.effect && reply.outcome.result != 0) log(kError, "operator()", "getDisplayInfo ", display, " error!");
        const bool isKnown = reply.effect && reply.arrived();
        infos[display] = isKnown ? text("720 1600 60 \"simulated display ", display, "\"") : "0 0 0 \"\"";
    }
    displays.resize(phone.displays);
    applyCalibration();
    log(kInfo, "init", "OK");
    return "0";
}

void Service::applyCalibration() {
    const Calibration& file = readCalibration();
    if (numOfDisplay < 1) return;
    if (file.whitePoint.size() >= kMatrix) displays[0].calibWhitePoint = matrixOf(file.whitePoint.data());
    if (file.colorCorrection.size() >= kMatrix)
        displays[0].calibColorCorrection = matrixOf(file.colorCorrection.data());
    whitePointParams = file.whitePointParams;
    if (const auto& run = file.eyeCare; run.size() >= kEyeCare) {
        const int32_t maximum = saturated(run[0]);
        const int32_t minimum = saturated(run[1]);
        closed(ClosedFunction::SET_EYE_CARE_PARAMS_OLED, {maximum, minimum}, {run.begin() + 2, run.begin() + kEyeCare});
        log(kDebug, "init", "m:", maximum, " m:", minimum);
    } else {
        log(kError, "init", "eye care init error");
    }
    const bool hasEnds = file.endPoints.size() >= 2;
    const int32_t warm = hasEnds ? file.endPoints[0] : 0xFFFFEA;
    const int32_t cold = hasEnds ? file.endPoints[1] : 0xEDFDFF;
    closed(ClosedFunction::SET_PARAMS, {warm, cold});
    log(hasEnds ? kDebug : kError, "init",
        hasEnds ? text("w:", hexadecimal(warm), " c:", hexadecimal(cold)) : "Unlimited init error");
    sendCalibratedGamma(file);
}

void Service::sendCalibratedGamma(const Calibration& file) {
    const auto& table = file.tuned.size() >= kTable ? file.tuned : file.calibrated;
    if (table.size() >= kTable) sendTable(Operation::SET_GLOBAL_GAMMA_LUT, 0, tableOf(table.data()));
}

// --- Matrices and tables ---

std::string Service::sendMatrices(uint64_t display, const Matrix& first, const Matrix& last) {
    if (!connected) return "FAILED";
    const Reply reply = composer(*connected, {Operation::SET_COLOR_TRANSFORM_MATRIX, display, first, last});
    return reply.arrived() ? simulator::composerResultName(reply.outcome.result) : "FAILED";
}

std::string Service::setTable(const Call& c) {
    const auto& t = *c.table;
    log(kDebug, c.operation, kHandle);
    log(kDebug, c.operation, "setGlobalGammaLut 96:", t[96], " 320:", t[320], " 1024:", t[1024], " 2048:", t[2048],
        " 3840:", t[3840]);
    const bool isGamma = c.operation == "setGlobalGammaLut";
    return sendTable(isGamma ? Operation::SET_GLOBAL_GAMMA_LUT : Operation::SET_GLOBAL_DE_GAMMA_LUT, c.display,
                     c.table);
}

std::string Service::sendTable(Operation operation, uint64_t display, const Table& table) {
    if (!connected) return "FAILED";
    composer(*connected, {operation, display, {}, {}, table});
    return "OK";
}

// Forwards a getter's Result and the values of what the composer holds; zeros if it delivers none.
std::string Service::get(Operation operation, const Call& c, const ValuesOf& valuesOf) {
    log(kDebug, c.operation, kHandle);
    static const simulator::DisplayState kNew;
    static const simulator::DisplayState kNothing = [] {
        simulator::DisplayState zeros;
        zeros.first.elements = zeros.last.elements = Matrix{};
        zeros.gamma.entries = zeros.deGamma.entries = std::array<float, kTable>{};
        return zeros;
    }();
    if (!connected) return "FAILED " + valuesOf(kNothing);
    const Reply reply = composer(*connected, {operation, c.display});
    const std::string result = reply.effect ? simulator::composerResultName(reply.outcome.result) : "OK";
    const std::string answer = (reply.arrived() ? result : "FAILED") + " ";
    if (!reply.effect || !reply.arrived()) return answer + valuesOf(kNothing);
    const auto held = simulated.composer().stateOf(c.display);
    return answer + valuesOf(held ? *held : kNew);
}

// --- Colour temperatures and screen modes ---

std::string Service::setLevel(uint64_t display, bool isUnlimited, int32_t level) {
    Display* const d = served(display);
    if (d == nullptr) return "FAILED";
    const char* const name = isUnlimited ? "setUnlimitedCT" : "setEyeCareCT";
    const auto function =
        isUnlimited ? ClosedFunction::GET_UNLIMITED_CT_PARAMS : ClosedFunction::GET_EYE_CARE_COEFF_OLED;
    const std::vector<float> values =
        isUnlimited ? closed(function, {level}, {1, 1, 1}, phone.gains, 0)
                    : closed(function, {level}, {1, 0, 0, 0, 1, 0, 0, 0, 1}, phone.coefficients, 0);
    if (const int error = phone.resultOf(function); error != 0) log(kError, name, "error ", error);
    if (isUnlimited) {
        d->unlimitedLevel = level;
        for (const size_t i : {0U, 1U, 2U}) d->unlimited[4 * i] = values[i];
        log(kDebug, name, level, "  ", Three{values.data()});
    } else {
        d->eyeCareLevel = level;
        d->eyeCare = matrixOf(values.data());
        log(kDebug, name, "v:", level);
        for (const size_t i : {0U, 3U, 6U}) log(kDebug, name, Three{&values[i]});
    }
    sendMatrices(display, kIdentity, finalMatrix(displays[display]));
    return "OK";
}

std::string Service::setMode(uint64_t display, int32_t mode) {
    if (mode == kStandard) log(kDebug, "setStandardMode", "enter");
    if (mode == kEnhanced) log(kDebug, "setEnhanceScreenMode", "enter");
    Display* const d = served(display);
    if (d == nullptr) return "-5";
    d->whitePoint = mode == kStandard ? d->calibWhitePoint : kIdentity;
    d->colorCorrection = mode == kStandard ? d->calibColorCorrection : kIdentity;
    if (mode == kSmartEnvironment) {
        const std::vector<float> gains = calibrateWhitePoint();
        for (const size_t i : {0U, 1U, 2U}) d->whitePoint[4 * i] = gains[i];
    }
    sendMatrices(display, kIdentity, finalMatrix(displays[display]));
    screenMode = mode;
    setCabcSysNode(mode == kSmartEnvironment ? 1 : 0);
    if (mode == kSmartEnvironment) add(simulator::ClosedCall{ClosedFunction::DESTROY_ALGORITHM});
    return "0";
}

// Returns the three gains.
std::vector<float> Service::calibrateWhitePoint() {
    const char* const function = "setSmartEnvironmentMode";
    std::vector<float> param = {0.28F, 0.30F, 0.66F, 0.295F, 0.15F, 0.334F, 0.656F, 0.055F, 0, 0, 0, 1, 1, 1};
    if (whitePointParams.size() >= kMatrix) std::copy_n(whitePointParams.begin(), kMatrix, param.begin() + 2);
    if (canRead(phone.whitePoint, function, "open wpc node error", "read wpc node error")) {
        long long xy[2];
        if (sscanf(phone.whitePoint.text.substr(0, 64).c_str(), "x=%lld,y=%lld\n", &xy[0], &xy[1]) == 2) {
            for (const size_t i : {0U, 1U}) {
                xy[i] = std::clamp<long long>(xy[i], INT32_MIN, INT32_MAX);
                param[i] = static_cast<float>(static_cast<double>(xy[i]) * 0.001);
            }
            log(kDebug, function, xy[0], " ", xy[1], " ", param[0], " ", param[1]);
        } else {
            log(kError, function, "format wpc error");
        }
    }
    add(simulator::ClosedCall{ClosedFunction::CONSTRUCT_ALGORITHM});
    param = closed(ClosedFunction::WHITE_POINT_CALIBRATE, {}, param, phone.whiteGains, 11);
    log(kDebug, function, Three{&param[11]});
    return {param.begin() + 11, param.end()};
}

// --- Backlight control and features ---

std::string Service::setCabcSysNode(int32_t level) {
    if (phone.cabc.kind != Kind::FILE) return log(kError, "setCabcSysNode", "open cabc node error"), "-5";
    const auto digit = static_cast<uint8_t>(static_cast<uint32_t>(level) + 48);
    add(simulator::NodeWrite{kCabcPath, {static_cast<char>(digit), '\n'}});
    return "0";
}

std::string Service::setCabcMode(int32_t mode) {
    if (screenMode != kSmartEnvironment) return "0";
    log(kDebug, "setCabcMode", "enter ", mode);
    constexpr int32_t kLevels[] = {0, 1, 1, 2, 3};
    if (mode >= 0 && mode <= 4) return setCabcSysNode(kLevels[mode]);
    return log(kError, "setCabcMode", "invalid value"), "-5";
}

std::string Service::setFeature(uint64_t display, int32_t feature, int32_t value, int32_t value2) {
    log(kDebug, "setFeature", "u:", kHandle, " d:", display, " m:", feature, " v:", value, " c:", value2);
    if (feature == 7) return setCabcMode(value);
    if (feature == 3 || feature == 23) return setLevel(display, feature == 23, value) == "OK" ? "0" : "-5";
    if (feature < 0 || feature > 2) return "-5";
    return setMode(display, feature), "0";  // the numbers of the modes
}

// --- Ambient light ---

std::string Service::setAlad(uint64_t display, bool enable) {
    if (display != 0) return "FAILED";
    if (enable) return worker || (connected && enableAlad()) ? "OK" : "FAILED";
    disableAlad();
    return "OK";
}

bool Service::enableAlad() {
    const auto failed = [this](const char* what, bool hasQueue, bool isEnabled) {
        log(kError, "enable", what);
        if (isEnabled) sensors(SensorOperation::DISABLE_SENSOR, {1});
        if (hasQueue) add(simulator::SensorCall{SensorOperation::RELEASE_QUEUE, {}});
        return false;
    };
    if (!phone.sensors) return failed("ISensorManager getService error", false, false);
    if (!sensors(SensorOperation::GET_DEFAULT_SENSOR, {5}).isOk())
        return failed("get light Sensor error", false, false);
    const Reply created = sensors(SensorOperation::CREATE_EVENT_QUEUE, {});
    const bool hasQueue = phone.queue && created.effect && created.outcome.result == 0;
    if (!hasQueue || !created.arrived()) return failed("createEventQueue error", hasQueue, false);
    if (!sensors(SensorOperation::ENABLE_SENSOR, {1, 1000000, 0}).isOk())
        return failed("enableSensor error", true, false);
    if (!phone.threads) return failed("start worker error", true, true);
    lux = 300;
    worker = Worker{*connected, now + 1000, levelOf(300)};
    return true;
}

void Service::disableAlad() {
    if (!worker) return;
    if (!sensors(SensorOperation::DISABLE_SENSOR, {1}).isOk()) log(kError, "", "disableSensor error");
    add(simulator::SensorCall{SensorOperation::RELEASE_QUEUE, {}});
    if (!worker->isSending) log(kDebug, "workThread", "exit");
    if (worker->isSending) now = worker->wakesAt;  // the end of the pause after the latest message
    composer(worker->composer, {Operation::SET_ALAD_PARAMS, 0, {}, {}, {}, 0});
    worker.reset();
}

void Service::light(float level) {
    lux = saturated(static_cast<double>(level));
}

void Service::pass(int64_t milliseconds) {
    const int64_t end = now + milliseconds;
    while (worker && worker->wakesAt <= end) wake();
    now = end;
}

// What the worker does from the end of a wait or pause to the next one. The level of an activation is requested after
// the pause of the start message.
void Service::wake() {
    Worker& w = *worker;
    if (!w.isSending) takeSample();
    if (w.isSending && w.hasStarted) {
        w.level = levelOf(w.mean);
        if (w.level > w.baseLevel) planSteps(w.baseLevel + 1, w.level);
    }
    w.isSending = !w.messages.empty();
    w.wakesAt += w.isSending ? 20 : 1000;
    if (w.isSending) send();
}

void Service::takeSample() {
    Worker& w = *worker;
    if (w.samples.empty()) w.samples.assign(5, lux);
    const int32_t previous = w.samples.front();
    w.samples.push_front(lux);
    w.samples.pop_back();
    const bool isReset = w.isActive ? lux < 5000 && previous < 5000 : lux > 8000 && previous > 8000;
    if (isReset) w.samples.assign(5, lux);
    auto sorted = w.samples;
    std::sort(sorted.begin(), sorted.end());
    w.mean = static_cast<int32_t>((int64_t{sorted[1]} + sorted[2] + sorted[3]) / 3);
    if (platform::isLogged(kDebug)) add(simulator::LightSample{w.mean, lux});
    w.curve.fill(0);
    if (w.mean < 0) return;
    if (!w.isActive && w.mean > 8000) {
        w.isActive = true;
        w.messages = {{Worker::Message::START, w.baseLevel}};
    } else if (w.isActive && w.mean >= 5000) {
        const int from = std::exchange(w.level, levelOf(w.mean));
        if (w.level > from) planSteps(from + 1, w.level);
        if (w.level < from) planSteps(from - 1, w.level);
    } else if (w.isActive) {
        w.isActive = false;
        if (w.level >= w.baseLevel) planSteps(w.level, w.baseLevel);
        w.messages.emplace_back(Worker::Message::OFF, 0);
    }
}

void Service::planSteps(int from, int to) {
    const int step = to >= from ? 1 : -1;
    for (int64_t level = from; level != int64_t{to} + step; level += step)
        worker->messages.emplace_back(Worker::Message::STEP, static_cast<int>(level));
}

// Sends the next message.
void Service::send() {
    Worker& w = *worker;
    const auto [message, level] = w.messages.front();
    w.messages.pop_front();
    w.hasStarted = message == Worker::Message::START;
    ComposerCall call{Operation::SET_ALAD_PARAMS, 0, {}, {}, {}, message == Worker::Message::OFF ? 0 : 1};
    if (message == Worker::Message::START) call.params.push_back({0, {4}});
    if (message != Worker::Message::OFF) {
        phone.writeCurve(level, w.curve.data());
        closed(ClosedFunction::GET_AGTM_CURVE_PARAMS, {level});
        call.params.push_back({14, std::vector<int64_t>(w.curve.begin(), w.curve.end())});
    }
    composer(w.composer, call);
}

// --- Exclusive mode ---

std::string Service::exclusiveModeEnter() {
    if (!connected) return "FAILED";
    composer(*connected, {Operation::SET_EXCLUSIVE_MODE, 0, {}, {}, {}, 1});
    sendMatrices(0, kIdentity, kIdentity);
    sendTable(Operation::SET_GLOBAL_GAMMA_LUT, 0, knownPowerTable(1 / 2.2F));
    disableAlad();
    setCabcSysNode(0);
    return "OK";
}

std::string Service::exclusiveModeExit() {
    if (!connected) return "FAILED";
    composer(*connected, {Operation::SET_EXCLUSIVE_MODE, 0, {}, {}, {}, 0});
    const Calibration& file = readCalibration();
    if (Display* const d = served(0); d != nullptr) {
        if (file.whitePoint.size() >= kMatrix) d->whitePoint = matrixOf(file.whitePoint.data());
        if (file.colorCorrection.size() >= kMatrix) d->colorCorrection = matrixOf(file.colorCorrection.data());
        sendMatrices(0, kIdentity, finalMatrix(*d));
    }
    sendCalibratedGamma(file);
    return "OK";
}

}  // namespace model
