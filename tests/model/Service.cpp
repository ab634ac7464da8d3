// SPDX-License-Identifier: Apache-2.0
#include "tests/model/Service.h"

#include <android/log.h>

#include <algorithm>
#include <cmath>
#include <cstdarg>
#include <cstdio>

namespace model {

namespace {

using simulator::ComposerCall;
using simulator::kIdentity;
using simulator::matrixOf;
using simulator::Outcome;
using simulator::tableOf;
using simulator::valueText;

constexpr int32_t kDebug = ANDROID_LOG_DEBUG;
constexpr int32_t kInfo = ANDROID_LOG_INFO;
constexpr int32_t kError = ANDROID_LOG_ERROR;
constexpr int32_t kBadDisplay = -3;
constexpr int32_t kFailed = -5;
constexpr uint32_t kMostDisplays = 1024;
constexpr int32_t kSmartEnvironment = 0;
constexpr int32_t kEnhanced = 1;
constexpr int32_t kStandard = 2;
constexpr size_t kMatrix = 9;
constexpr size_t kEyeCare = 38;
constexpr size_t kTable = 4096;

__attribute__((format(printf, 1, 2))) std::string text(const char* format, ...) {
    char line[256];
    va_list arguments;
    va_start(arguments, format);
    vsnprintf(line, sizeof line, format, arguments);  // NOLINT(clang-analyzer-valist.Uninitialized): it is not
    va_end(arguments);
    return line;
}

std::string threeFloats(const float* f) {
    return text("%f %f %f", static_cast<double>(f[0]), static_cast<double>(f[1]), static_cast<double>(f[2]));
}

std::string handleText() {
    return std::to_string(kHandle);
}

std::string nameOf(int32_t result) {
    return simulator::composerResultName(result);
}

int32_t saturated(double value) {
    if (std::isnan(value)) return 0;
    return value >= 2147483647.0 ? INT32_MAX : value <= -2147483648.0 ? INT32_MIN : static_cast<int32_t>(value);
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

// Over the corners of the colour cube but black, white first.
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
    for (size_t i = 0; i < table.size(); ++i) {
        table[i] = static_cast<float>(std::pow(static_cast<double>(i) / 4096, static_cast<double>(exponent)));
    }
    return simulator::tableOf(table.data());
}

}  // namespace

Service::Service(const Settings& phoneSettings, uint64_t lastHandle)
    : phone(phoneSettings), composerLife(phone.composerLife), handle(lastHandle) {}

std::string Service::call(const Call& call) {
    using Operation = std::string (Service::*)(const Call&);
    static const std::map<std::string, Operation> kOperations = {
        {"init", &Service::init},
        {"deInit", &Service::deInit},
        {"allocUserHandle", &Service::allocUserHandle},
        {"freeUserHandle", &Service::freeUserHandle},
        {"getNumOfDisplay", &Service::getNumOfDisplay},
        {"getDisplayInfo", &Service::getDisplayInfo},
        {"setColorTransformMatrix", &Service::setColorTransformMatrix},
        {"setColorTransformMatrix2", &Service::setColorTransformMatrix2},
        {"getColorTransformMatrix", &Service::getColorTransformMatrix},
        {"getColorTransformMatrix2", &Service::getColorTransformMatrix2},
        {"setGlobalGammaLut", &Service::setTable},
        {"getGlobalGammaLut", &Service::getTable},
        {"setGlobalDeGammaLut", &Service::setTable},
        {"getGlobalDeGammaLut", &Service::getTable},
        {"setGlobalGamma", &Service::setGlobalGamma},
        {"setUnlimitedCT", &Service::setUnlimitedCT},
        {"getUnlimitedCT", &Service::getLevel},
        {"setEyeCareCT", &Service::setEyeCareCT},
        {"getEyeCareCT", &Service::getLevel},
        {"setStandardMode", &Service::setStandardMode},
        {"setEnhanceScreenMode", &Service::setEnhanceScreenMode},
        {"setSmartEnvironmentMode", &Service::setSmartEnvironmentMode},
        {"setCabcSysNode", &Service::setCabcSysNode},
        {"setCabcMode", &Service::setCabcMode},
        {"setFeature", &Service::setFeature},
        {"setMiscFeature", &Service::setMiscFeature},
        {"getMiscFeature", &Service::getMiscFeature},
        {"setAlad", &Service::setAlad},
        {"IsAladEnable", &Service::isAladEnable},
        {"exclusiveModeEnter", &Service::exclusiveModeEnter},
        {"exclusiveModeExit", &Service::exclusiveModeExit},
    };
    return (this->*kOperations.at(call.operation))(call);
}

// --- Around the service ---

void Service::log(int32_t priority, const std::string& function, const std::string& message) {
    add(simulator::LogLine{priority, "KovDisplayControlService", function, 0, message});
}

void Service::closed(simulator::ClosedCall call) {
    const bool returnsNothing =
        call.function == ClosedFunction::CONSTRUCT_ALGORITHM || call.function == ClosedFunction::DESTROY_ALGORITHM;
    if (!returnsNothing) call.result = phone.resultOf(call.function);
    add(call);
}

// A new composer and a new display hold what they begin with.
void Service::phoneChanged() {
    if (phone.composerLife != composerLife) held.clear();
    composerLife = phone.composerLife;
    held.erase(held.lower_bound(phone.displays), held.end());
}

const Service::Held& Service::heldFor(uint64_t display) const {
    static const Held kNew = {kIdentity, kIdentity, powerTable(1 / 2.2F), powerTable(2.2F)};
    const auto found = held.find(display);
    return found == held.end() ? kNew : found->second;
}

Service::Reply Service::replyOf(Failure failure, bool isGetter, int32_t result) {
    const bool isDead = failure == Failure::TRANSPORT_BEFORE || failure == Failure::TRANSPORT_AFTER;
    const bool isSilent = isGetter && failure == Failure::NO_CALLBACK;
    const bool isRefused = !isGetter && failure == Failure::REFUSED;
    return {{isDead     ? Outcome::Kind::DEAD_OBJECT
             : isSilent ? Outcome::Kind::NO_CALLBACK
                        : Outcome::Kind::ANSWERED,
             result},
            failure != Failure::TRANSPORT_BEFORE && !isSilent && !isRefused};
}

Service::Reply Service::composer(int life, ComposerCall call) {
    const bool isGetter = !call.first && !call.enable && call.table == nullptr;
    const auto found = phone.composerFailures.find(call.operation);
    Failure failure = found == phone.composerFailures.end() ? Failure::NONE : found->second;
    if (life != phone.composerLife) failure = Failure::TRANSPORT_BEFORE;
    const bool isKnown = !call.display || *call.display < phone.displays;
    const Reply reply = replyOf(failure, isGetter, failure == Failure::REFUSED ? kRefusal : isKnown ? 0 : kBadDisplay);
    call.outcome = reply.outcome;
    add(call);
    return reply;
}

Service::Reply Service::sensors(SensorOperation operation, std::vector<int64_t> arguments) {
    constexpr int32_t kInvalidOperation = 6;
    const bool isGetter =
        operation == SensorOperation::GET_DEFAULT_SENSOR || operation == SensorOperation::CREATE_EVENT_QUEUE;
    const auto found = phone.sensorFailures.find(operation);
    const Failure failure = found == phone.sensorFailures.end() ? Failure::NONE : found->second;
    const Reply reply = replyOf(failure, isGetter, failure == Failure::REFUSED ? kInvalidOperation : 0);
    add(simulator::SensorCall{operation, std::move(arguments), reply.outcome});
    return reply;
}

// False, with the error logged, if the node cannot be opened or delivers no byte.
bool Service::canRead(const Node& node, const char* function, const char* openError, const char* readError) {
    if (node.kind == Node::Kind::FILE && !node.text.empty()) return true;
    log(kError, function, node.kind == Node::Kind::MISSING ? openError : readError);
    return false;
}

const Calibration& Service::readCalibration() {
    static const Calibration kNothing;
    const bool canReadPanel = canRead(phone.panel, "parser", "open panel name node error", "read panel name error");
    const std::string panel = canReadPanel ? phone.panel.text.substr(0, 128).c_str() : "";
    size_t file = 0;
    if (panel == "dornel R7TK 35 02 0a hd+ video dsi panel\n") file = 1;
    if (panel == "dornel R7TK 43 03 0b hd+ video dsi panel\n") file = 2;
    log(kDebug, "parser", std::string("panel xml ") + kCalibrationPaths[file]);
    const Calibration& calibration = phone.calibrations[file];
    if (calibration.file == Calibration::File::GOOD) return calibration;
    log(kError, "parser", calibration.file == Calibration::File::MISSING ? "access error!" : "xmlParseFile error!");
    return kNothing;
}

// --- Start, stop, handles and queries ---

std::string Service::init(const Call& /*call*/) {
    connected.reset();
    if (phone.composer) connected = phone.composerLife;
    if (!connected) {
        log(kError, "init", "get composer ext service error!");
        return "-1";
    }
    const bool isCounted = composer(*connected, {ComposerOperation::GET_NUM_OF_DISPLAY}).isOk();
    numOfDisplay = isCounted && phone.displays <= kMostDisplays ? static_cast<int32_t>(phone.displays) : -1;
    if (numOfDisplay < 0) {
        log(kError, "init", "getNumOfDisplay error!");
        return "-2";
    }
    infos.resize(phone.displays);
    for (uint64_t display = 0; display < phone.displays; ++display) {
        const std::string number = std::to_string(display);
        const Reply reply = composer(*connected, {ComposerOperation::GET_DISPLAY_INFO, display});
        const bool isRefused = reply.effect && reply.outcome.result != 0;
        if (isRefused) log(kError, "operator()", "getDisplayInfo " + number + " error!");
        const bool hasInfo = reply.effect && reply.arrived();
        infos[display] = hasInfo ? "720 1600 60 \"simulated display " + number + "\"" : "0 0 0 \"\"";
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
    if (file.eyeCare.size() >= kEyeCare) {
        const int32_t maximum = saturated(file.eyeCare[0]);
        const int32_t minimum = saturated(file.eyeCare[1]);
        const std::vector<double> coefficients(file.eyeCare.begin() + 2, file.eyeCare.begin() + kEyeCare);
        closed({ClosedFunction::SET_EYE_CARE_PARAMS_OLED, {maximum, minimum}, coefficients});
        log(kDebug, "init", text("m:%d m:%d", maximum, minimum));
    } else {
        log(kError, "init", "eye care init error");
    }
    if (file.endPoints.size() >= 2) {
        closed({ClosedFunction::SET_PARAMS, {file.endPoints[0], file.endPoints[1]}});
        log(kDebug, "init", text("w:%.8X c:%.8X", file.endPoints[0], file.endPoints[1]));
    } else {
        closed({ClosedFunction::SET_PARAMS, {0xFFFFEA, 0xEDFDFF}});
        log(kError, "init", "Unlimited init error");
    }
    sendCalibratedGamma(file);
}

void Service::sendCalibratedGamma(const Calibration& file) {
    const auto& table = file.tuned.size() >= kTable ? file.tuned : file.calibrated;
    if (table.size() >= kTable) sendTable(ComposerOperation::SET_GLOBAL_GAMMA_LUT, 0, tableOf(table.data()));
}

std::string Service::deInit(const Call& /*call*/) {
    connected.reset();
    return "";
}

std::string Service::allocUserHandle(const Call& /*call*/) {
    log(kInfo, "allocUserHandle", std::to_string(++handle));
    return "OK " + std::to_string(handle);
}

std::string Service::freeUserHandle(const Call& /*call*/) {
    log(kInfo, "freeUserHandle", handleText());
    return "OK";
}

std::string Service::getNumOfDisplay(const Call& /*call*/) {
    log(kInfo, "getNumOfDisplay", handleText());
    return "OK " + std::to_string(static_cast<uint32_t>(numOfDisplay));
}

std::string Service::getDisplayInfo(const Call& call) {
    log(kInfo, "getDisplayInfo", handleText());
    return knows(call.display) ? "OK " + infos[call.display] : "BAD_DISPLAY 0 0 0 \"0\"";
}

// --- Matrices and tables ---

std::string Service::setColorTransformMatrix(const Call& call) {
    log(kDebug, call.operation, handleText());
    for (size_t i = 0; i < 3; ++i)
        log(kDebug, call.operation, text("setColorTransformMatrix%zu ", i) + threeFloats(&call.last[3 * i]));
    return nameOf(sendMatrices(call.display, kIdentity, call.last));
}

std::string Service::setColorTransformMatrix2(const Call& call) {
    log(kDebug, call.operation, handleText());
    for (const size_t i : {0, 3, 6}) log(kDebug, call.operation, "first " + threeFloats(&call.first[i]));
    for (const size_t i : {0, 3, 6}) log(kDebug, call.operation, "last " + threeFloats(&call.last[i]));
    return nameOf(sendMatrices(call.display, call.first, call.last));
}

std::string Service::getColorTransformMatrix(const Call& call) {
    return get(ComposerOperation::GET_COLOR_TRANSFORM_MATRIX, call, valueText(heldFor(call.display).first),
               valueText(Matrix{}));
}

std::string Service::getColorTransformMatrix2(const Call& call) {
    const std::string zeros = valueText(Matrix{});
    const Held& matrices = heldFor(call.display);
    return get(ComposerOperation::GET_COLOR_TRANSFORM_MATRIX, call,
               valueText(matrices.first) + " " + valueText(matrices.last), zeros + " " + zeros);
}

int32_t Service::sendMatrices(uint64_t display, const Matrix& first, const Matrix& last) {
    if (!connected) return kFailed;
    const Reply reply = composer(*connected, {ComposerOperation::SET_COLOR_TRANSFORM_MATRIX, display, first, last});
    if (reply.effect && display < phone.displays) {
        Held& holds = held.try_emplace(display, heldFor(display)).first->second;
        holds.first = first;
        holds.last = last;
    }
    return reply.arrived() ? reply.outcome.result : kFailed;
}

std::string Service::setTable(const Call& call) {
    const auto& t = *call.table;
    const auto at = [&t](size_t i) { return static_cast<double>(t[i]); };
    log(kDebug, call.operation, handleText());
    log(kDebug, call.operation,
        text("setGlobalGammaLut 96:%f 320:%f 1024:%f 2048:%f 3840:%f", at(96), at(320), at(1024), at(2048), at(3840)));
    const bool isGamma = call.operation == "setGlobalGammaLut";
    return sendTable(isGamma ? ComposerOperation::SET_GLOBAL_GAMMA_LUT : ComposerOperation::SET_GLOBAL_DE_GAMMA_LUT,
                     call.display, call.table);
}

std::string Service::getTable(const Call& call) {
    static const std::string kZeros = valueText(Call().table);
    const Held& tables = heldFor(call.display);
    return call.operation == "getGlobalGammaLut"
               ? get(ComposerOperation::GET_GLOBAL_GAMMA_LUT, call, valueText(tables.gamma), kZeros)
               : get(ComposerOperation::GET_GLOBAL_DE_GAMMA_LUT, call, valueText(tables.deGamma), kZeros);
}

std::string Service::setGlobalGamma(const Call& call) {
    log(kDebug, "setGlobalGamma", handleText());
    log(kInfo, "", text("%f", static_cast<double>(call.exponent)));
    return sendTable(ComposerOperation::SET_GLOBAL_GAMMA_LUT, call.display, powerTable(call.exponent));
}

std::string Service::sendTable(ComposerOperation operation, uint64_t display, const Table& table) {
    if (!connected) return "FAILED";
    const Reply reply = composer(*connected, {operation, display, {}, {}, table});
    if (reply.effect && display < phone.displays) {
        Held& holds = held.try_emplace(display, heldFor(display)).first->second;
        (operation == ComposerOperation::SET_GLOBAL_GAMMA_LUT ? holds.gamma : holds.deGamma) = table;
    }
    return "OK";
}

// Forwards a getter's Result and its values; zeros if the composer delivers none.
std::string Service::get(ComposerOperation operation, const Call& call, const std::string& values,
                         const std::string& zeros) {
    log(kDebug, call.operation, handleText());
    if (!connected) return "FAILED " + zeros;
    const Reply reply = composer(*connected, {operation, call.display});
    if (!reply.arrived()) return "FAILED " + zeros;
    return reply.effect ? nameOf(reply.outcome.result) + " " + values : "OK " + zeros;
}

// --- Colour temperatures and screen modes ---

std::string Service::setUnlimitedCT(const Call& call) {
    Display* const display = served(call.display);
    if (display == nullptr) return "FAILED";
    std::vector<float> gains(3, 1.0F);
    const int error = phone.resultOf(ClosedFunction::GET_UNLIMITED_CT_PARAMS);
    simulator::ClosedCall asked{ClosedFunction::GET_UNLIMITED_CT_PARAMS, {call.number}, {}, gains};
    std::copy(phone.gains.begin(), phone.gains.end(), gains.begin());
    asked.after = gains;
    closed(asked);
    if (error != 0) log(kError, "setUnlimitedCT", text("error %d", error));
    log(kDebug, "setUnlimitedCT", text("%d  ", call.number) + threeFloats(gains.data()));
    display->unlimitedLevel = call.number;
    for (size_t i = 0; i < 3; ++i) display->unlimited[4 * i] = gains[i];
    sendFinalMatrix(call.display);
    return "OK";
}

std::string Service::setEyeCareCT(const Call& call) {
    Display* const display = served(call.display);
    if (display == nullptr) return "FAILED";
    const int error = phone.resultOf(ClosedFunction::GET_EYE_CARE_COEFF_OLED);
    Matrix matrix = kIdentity;
    simulator::ClosedCall asked{
        ClosedFunction::GET_EYE_CARE_COEFF_OLED, {call.number}, {}, {matrix.begin(), matrix.end()}};
    std::copy(phone.coefficients.begin(), phone.coefficients.end(), matrix.begin());
    asked.after.assign(matrix.begin(), matrix.end());
    closed(asked);
    if (error != 0) log(kError, "setEyeCareCT", text("error %d", error));
    log(kDebug, "setEyeCareCT", text("v:%d", call.number));
    for (const size_t i : {0, 3, 6}) log(kDebug, "setEyeCareCT", threeFloats(&matrix[i]));
    display->eyeCareLevel = call.number;
    display->eyeCare = matrix;
    sendFinalMatrix(call.display);
    return "OK";
}

std::string Service::getLevel(const Call& call) {
    if (!knows(call.display)) return "FAILED 0";
    const Display& display = displays[call.display];
    return "OK " + std::to_string(call.operation == "getUnlimitedCT" ? display.unlimitedLevel : display.eyeCareLevel);
}

void Service::sendFinalMatrix(uint64_t display) {
    const Display& d = displays[display];
    Matrix last = product(d.eyeCare, product(d.unlimited, product(d.whitePoint, d.colorCorrection)));
    const float largest = largestOutput(last);
    if (static_cast<double>(largest) > 1e-6) {
        for (float& element : last) element /= largest;
    }
    sendMatrices(display, kIdentity, last);
}

std::string Service::enterMode(uint64_t display, int32_t mode, const Matrix& whitePoint,
                               const Matrix& colorCorrection) {
    displays[display].whitePoint = whitePoint;
    displays[display].colorCorrection = colorCorrection;
    sendFinalMatrix(display);
    screenMode = mode;
    setCabcSysNode({"setCabcSysNode", display, mode == kSmartEnvironment ? 1 : 0});
    return "0";
}

std::string Service::setStandardMode(const Call& call) {
    log(kDebug, "setStandardMode", "enter");
    const Display* const display = served(call.display);
    if (display == nullptr) return "-5";
    return enterMode(call.display, kStandard, display->calibWhitePoint, display->calibColorCorrection);
}

std::string Service::setEnhanceScreenMode(const Call& call) {
    log(kDebug, "setEnhanceScreenMode", "enter");
    return served(call.display) == nullptr ? "-5" : enterMode(call.display, kEnhanced, kIdentity, kIdentity);
}

std::string Service::setSmartEnvironmentMode(const Call& call) {
    const char* const function = "setSmartEnvironmentMode";
    if (served(call.display) == nullptr) return "-5";
    android::WhitePointCalibrateParam param = {0.28F, 0.30F, {0.66F, 0.295F, 0.15F, 0.334F, 0.656F, 0.055F, 0, 0, 0},
                                               1,     1,     1};
    if (whitePointParams.size() >= kMatrix) std::copy_n(whitePointParams.begin(), kMatrix, param.params);
    if (canRead(phone.whitePoint, function, "open wpc node error", "read wpc node error")) {
        long long x = 0;
        long long y = 0;
        if (sscanf(phone.whitePoint.text.substr(0, 64).c_str(), "x=%lld,y=%lld\n", &x, &y) == 2) {
            x = std::clamp<long long>(x, INT32_MIN, INT32_MAX);
            y = std::clamp<long long>(y, INT32_MIN, INT32_MAX);
            param.whiteX = static_cast<float>(static_cast<double>(x) * 0.001);
            param.whiteY = static_cast<float>(static_cast<double>(y) * 0.001);
            log(kDebug, function,
                text("%lld %lld %f %f", x, y, static_cast<double>(param.whiteX), static_cast<double>(param.whiteY)));
        } else {
            log(kError, function, "format wpc error");
        }
    }
    closed({ClosedFunction::CONSTRUCT_ALGORITHM});
    const auto floatsOf = [&param] { return std::vector<float>(&param.whiteX, &param.gainB + 1); };
    simulator::ClosedCall asked{ClosedFunction::WHITE_POINT_CALIBRATE, {}, {}, floatsOf()};
    std::copy(phone.whiteGains.begin(), phone.whiteGains.end(), &param.gainR);
    asked.after = floatsOf();
    closed(asked);
    log(kDebug, function, threeFloats(&param.gainR));
    const std::string answer = enterMode(call.display, kSmartEnvironment,
                                         {param.gainR, 0, 0, 0, param.gainG, 0, 0, 0, param.gainB}, kIdentity);
    closed({ClosedFunction::DESTROY_ALGORITHM});
    return answer;
}

// --- Backlight control and features ---

std::string Service::setCabcSysNode(const Call& call) {
    if (phone.cabc.kind != Node::Kind::FILE) {
        log(kError, "setCabcSysNode", "open cabc node error");
        return "-5";
    }
    const auto digit = static_cast<uint8_t>(static_cast<uint32_t>(call.number) + 48);
    add(simulator::NodeWrite{"lcd_cabc_mode", {static_cast<char>(digit), '\n'}});
    return "0";
}

std::string Service::setCabcMode(const Call& call) {
    if (screenMode != kSmartEnvironment) return "0";
    log(kDebug, "setCabcMode", text("enter %d", call.number));
    static const std::map<int32_t, int32_t> kLevels = {{0, 0}, {1, 1}, {2, 1}, {3, 2}, {4, 3}};
    const auto level = kLevels.find(call.number);
    if (level != kLevels.end()) return setCabcSysNode({"setCabcSysNode", call.display, level->second});
    log(kError, "setCabcMode", "invalid value");
    return "-5";
}

std::string Service::setFeature(const Call& call) {
    log(kDebug, "setFeature",
        text("u:%llu d:%llu m:%d v:%d c:%d", static_cast<unsigned long long>(kHandle),
             static_cast<unsigned long long>(call.display), call.number, call.value, call.value2));
    const auto number = [](const std::string& result) { return result == "OK" ? "0" : "-5"; };
    switch (call.number) {
        case 0:
            setSmartEnvironmentMode({"setSmartEnvironmentMode", call.display});
            return "0";
        case 1:
            setEnhanceScreenMode({"setEnhanceScreenMode", call.display});
            return "0";
        case 2:
            setStandardMode({"setStandardMode", call.display});
            return "0";
        case 3:
            return number(setEyeCareCT({"setEyeCareCT", call.display, call.value}));
        case 7:
            return setCabcMode({"setCabcMode", call.display, call.value});
        case 23:
            return number(setUnlimitedCT({"setUnlimitedCT", call.display, call.value}));
        default:
            return "-5";
    }
}

std::string Service::setMiscFeature(const Call& call) {
    if (call.values.size() != 2) return "FAILED 0 values";
    const Call feature{"setFeature", call.display, call.number, saturated(call.values[0]), saturated(call.values[1])};
    return (setFeature(feature) == "0" ? "OK" : "FAILED") + std::string(" 0 values");
}

std::string Service::getMiscFeature(const Call& /*call*/) {
    return "FAILED 0 values";
}

// --- Ambient light ---

std::string Service::setAlad(const Call& call) {
    log(kInfo, "setAlad", handleText() + text(" %d", call.number));
    if (call.display != 0) return "FAILED";
    if (call.number == 0) {
        disableAlad();
        return "OK";
    }
    return worker || (connected && enableAlad()) ? "OK" : "FAILED";
}

std::string Service::isAladEnable(const Call& /*call*/) {
    return worker ? "1" : "0";
}

bool Service::enableAlad() {
    const auto failed = [this](const char* what) {
        log(kError, "enable", what);
        return false;
    };
    const auto releaseQueue = [this] { add(simulator::SensorCall{SensorOperation::RELEASE_QUEUE, {}}); };
    if (!phone.sensors) return failed("ISensorManager getService error");
    if (!sensors(SensorOperation::GET_DEFAULT_SENSOR, {5}).isOk()) return failed("get light Sensor error");
    const Reply created = sensors(SensorOperation::CREATE_EVENT_QUEUE, {});
    const bool hasQueue = phone.queue && created.effect && created.outcome.result == 0;
    if (!hasQueue || !created.arrived()) {
        failed("createEventQueue error");
        if (hasQueue) releaseQueue();
        return false;
    }
    if (!sensors(SensorOperation::ENABLE_SENSOR, {1, 1000000, 0}).isOk()) {
        failed("enableSensor error");
        releaseQueue();
        return false;
    }
    if (!phone.threads) {
        failed("start worker error");
        sensors(SensorOperation::DISABLE_SENSOR, {1});
        releaseQueue();
        return false;
    }
    lux = 300;
    worker = Worker{*connected, now + 1000, levelOf(300)};
    return true;
}

void Service::disableAlad() {
    if (!worker) return;
    if (!sensors(SensorOperation::DISABLE_SENSOR, {1}).isOk()) log(kError, "", "disableSensor error");
    add(simulator::SensorCall{SensorOperation::RELEASE_QUEUE, {}});
    if (worker->isSending) {
        now = worker->wakesAt;  // the end of the pause after the latest message
    } else {
        log(kDebug, "workThread", "exit");
    }
    ComposerCall off{ComposerOperation::SET_ALAD_PARAMS, 0};
    off.enable = 0;
    composer(worker->composer, off);
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

// The worker's steps: from the end of a wait or pause to the next one.
void Service::wake() {
    Worker& w = *worker;
    if (!w.isSending) takeSample();
    if (w.isSending && w.hasStarted) rampUp();
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
    add(simulator::LightSample{w.mean, lux});
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
    for (int level = from; level != to + step; level += step)
        worker->messages.emplace_back(Worker::Message::STEP, level);
}

// Sends the next message. The level of an activation is asked for after the pause of the start message.
void Service::send() {
    Worker& w = *worker;
    const auto [message, level] = w.messages.front();
    w.messages.pop_front();
    ComposerCall call{ComposerOperation::SET_ALAD_PARAMS, 0};
    call.enable = message == Worker::Message::OFF ? 0 : 1;
    if (message == Worker::Message::START) call.params.push_back({0, {4}});
    if (message != Worker::Message::OFF) {
        phone.writeCurve(level, w.curve.data());
        closed({ClosedFunction::GET_AGTM_CURVE_PARAMS, {level}});
        call.params.push_back({14, std::vector<int64_t>(w.curve.begin(), w.curve.end())});
    }
    composer(w.composer, call);
    w.hasStarted = message == Worker::Message::START;
}

void Service::rampUp() {
    worker->level = levelOf(worker->mean);
    if (worker->level > worker->baseLevel) planSteps(worker->baseLevel + 1, worker->level);
}

int Service::levelOf(int light) {
    simulator::ClosedCall call{ClosedFunction::GET_AGTM_LEVEL, {light}};
    call.result = phone.levelOf(light);
    add(call);
    return *call.result;
}

// --- Exclusive mode ---

std::string Service::exclusiveModeEnter(const Call& call) {
    log(kInfo, "exclusiveModeEnter", handleText() + text(" %d", call.number));
    if (!connected) return "FAILED";
    ComposerCall enter{ComposerOperation::SET_EXCLUSIVE_MODE, 0};
    enter.enable = 1;
    composer(*connected, enter);
    sendMatrices(0, kIdentity, kIdentity);
    sendTable(ComposerOperation::SET_GLOBAL_GAMMA_LUT, 0, powerTable(1 / 2.2F));
    disableAlad();
    setCabcSysNode({"setCabcSysNode", 0, 0});
    return "OK";
}

std::string Service::exclusiveModeExit(const Call& call) {
    log(kInfo, "exclusiveModeExit", handleText() + text(" %d", call.number));
    if (!connected) return "FAILED";
    ComposerCall leave{ComposerOperation::SET_EXCLUSIVE_MODE, 0};
    leave.enable = 0;
    composer(*connected, leave);
    const Calibration& file = readCalibration();
    if (Display* const display = served(0); display != nullptr) {
        if (file.whitePoint.size() >= kMatrix) display->whitePoint = matrixOf(file.whitePoint.data());
        if (file.colorCorrection.size() >= kMatrix) display->colorCorrection = matrixOf(file.colorCorrection.data());
        sendFinalMatrix(0);
    }
    sendCalibratedGamma(file);
    return "OK";
}

}  // namespace model
