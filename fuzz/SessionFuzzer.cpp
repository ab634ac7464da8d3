// A session: bytes become served operations, faults around the service, light and time; every answer, and everything
// that the composer, the sensors, the closed libraries and the backlight node are told, is compared with the model's.
#include <platform/VirtualClock.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <iterator>
#include <string_view>
#include <utility>

#include "fuzz/Input.h"
#include "fuzz/Model.h"
#include "fuzz/Quiet.h"
#include "fuzz/Require.h"
#include "service/DisplayControlImpl.h"
#include "tests/fakes/ClosedLibraries.h"
#include "tests/fakes/FakeComposer.h"
#include "tests/fakes/FakeSensors.h"
#include "tests/fakes/PhoneFolder.h"

namespace fuzz {

namespace {

namespace display_control = ::vendor::kov::hardware::display_control::V1_0;
using display_control::Result;
using Service = display_control::implementation::DisplayControlImpl;
using ::android::sp;
using ::android::hardware::hidl_vec;
using ::android::hardware::Return;

constexpr uint64_t kHandle = 7;
constexpr uint64_t kDisplays[] = {0, 0, 0, 0, 1, 1, 2, 3, uint64_t{1} << 32, UINT64_MAX};
// 400000: there is memory for what is known of the displays, and none for their colours.
constexpr uint32_t kCounts[] = {0, 1, 2, 2, 3, 400000, INT32_MAX, uint32_t{INT32_MAX} + 1, UINT32_MAX};
constexpr int32_t kIntegers[] = {0, 1, 2, 3, 4, 5, 7, 23, 24, -1, 100, -100, 300, INT32_MAX, INT32_MIN};
constexpr float kFloats[] = {0, 1, -1, 2, 0.5F, 1 / 2.2F, 2.2F, -0.0F, 1e-7F, 1e30F, -1e30F, NAN, INFINITY, -INFINITY};
constexpr float kLights[] = {300,  0,     -5,    4999,  5000,  5001,   7999,  8000,  8001,      9000,
                             9999, 20000, 30000, 49999, 60000, 123.9F, -0.7F, 5e10F, -INFINITY, NAN};
constexpr int64_t kDurations[] = {0, 1, 19, 20, 21, 500, 979, 980, 1000, 1020, 2000, 5000};  // milliseconds
constexpr std::array<size_t, 64> kTableSizes = {0, 0, 0, 0, 0, 0, 3, 4096, 4097};  // mostly none: they take long
constexpr fakes::Fault kFaults[] = {fakes::Fault::NONE, fakes::Fault::REFUSES,     fakes::Fault::SILENT,
                                    fakes::Fault::NONE, fakes::Fault::UNREACHABLE, fakes::Fault::DIES_AFTER_ANSWER};
constexpr const char* kComposerCalls[] = {"getNumOfDisplay",         "getDisplayInfo",      "setColorTransformMatrix",
                                          "getColorTransformMatrix", "setGlobalGammaLut",   "getGlobalGammaLut",
                                          "setGlobalDeGammaLut",     "getGlobalDeGammaLut", "setAladParams",
                                          "setExclusiveMode"};
constexpr const char* kSensorCalls[] = {"getDefaultSensor", "createEventQueue", "enableSensor", "disableSensor"};
constexpr const char* kPanels[] = {"a panel without a row", "dornel R7TK 35 02 0a hd+ video dsi panel\n",
                                   "dornel R7TK 43 03 0b hd+ video dsi panel\n"};
const std::array<std::string, kCalibrationFiles> kCalibrationPaths = {
    fakes::kDefaultCalibration, "/vendor/etc/disp_calib_data_0a.xml", "/vendor/etc/disp_calib_data_0b.xml"};

template <typename T>
std::string_view bytesOf(const T* values, size_t count) {
    return {reinterpret_cast<const char*>(values), count * sizeof *values};
}

std::string numberText(const char* format, double value) {
    char text[64];
    snprintf(text, sizeof text, format, value);
    return text;
}

std::string element(const std::string& name, const std::string& text) {
    return "<" + name + ">" + text + "</" + name + ">\n";
}

std::string block(const std::string& name, const std::vector<float>& values) {
    std::string text;
    std::string value;
    for (size_t i = 0; i < values.size(); ++i) {
        const bool same = i > 0 && bytesOf(&values[i], 1) == bytesOf(&values[i - 1], 1);  // as in tables
        if (!same) value = element("v", numberText("%.9g", static_cast<double>(values[i])));
        text += value;
    }
    return values.empty() ? "" : element(name, text);
}

std::string textOf(const Calibration& file) {
    std::string text = block("CTM_WPC", file.whitePoint) + block("CTM_CCM", file.colorCorrection) +
                       block("WPCParam", file.whitePointParams) + block("Gamma_Calib", file.calibrated) +
                       block("Gamma_Tuning", file.tuned);
    std::string ends;
    for (const int32_t color : file.endPoints) {
        char hexadecimal[16];
        snprintf(hexadecimal, sizeof hexadecimal, "%X", static_cast<uint32_t>(color));
        ends += element(ends.empty() ? "Warm" : "Cold", hexadecimal);
    }
    std::string eyeCare;
    for (size_t i = 0; i < file.eyeCare.size(); ++i) {
        const char* const name = i == 0 ? "MaxCCT" : i == 1 ? "MinCCT" : "c";
        eyeCare += element(name, numberText("%.17g", file.eyeCare[i]));
    }
    text += element("UnlimitedCT", ends) + element("EyeCare", eyeCare);
    return file.file == Calibration::File::MALFORMED ? "<panel>" + text : element("panel", text);
}

// Bits, but that every NaN is like the other.
template <typename T>
bool isSame(const T* a, const T* b, size_t count) {
    return bytesOf(a, count) == bytesOf(b, count) || std::equal(a, a + count, b, [](T left, T right) {
               return std::isnan(left) ? std::isnan(right) : bytesOf(&left, 1) == bytesOf(&right, 1);
           });
}

bool isSame(const Answer& a, const Answer& b) {
    return a.result == b.result && a.text == b.text && a.values.size() == b.values.size() &&
           isSame(a.values.data(), b.values.data(), a.values.size());
}

std::string textOf(const Answer& answer) {
    const size_t shown = std::min<size_t>(answer.values.size(), 18);
    return std::to_string(answer.result) + " \"" + answer.text + "\" " + fakes::text(answer.values.data(), shown);
}

// A client's and the phone's side of a session, and the model next to it.
class Story {
public:
    Story(Input bytes, const fakes::PhoneFolder& folder, uint64_t lastHandle);
    ~Story();
    Story(const Story&) = delete;
    Story& operator=(const Story&) = delete;

    // One step after another until the bytes are used up.
    void run();

private:
    struct Step {
        const char* name;
        void (Story::*run)();
    };
    static const std::vector<Step> kSteps;

    // The service's answers as the model gives them.
    template <typename T>
    static Answer answerOf(Return<T> answer) {
        require(answer.isOk(), "a served operation succeeds at the transport");
        return {static_cast<int64_t>(static_cast<int32_t>(static_cast<T>(answer)))};
    }
    // Of an operation that answers through a callback, which is called once before it returns.
    Answer answerOf(const Return<void>& status) {
        require(status.isOk(), "a served operation succeeds at the transport");
        require(answers.size() == 1, "a callback is called once");
        return std::exchange(answers, {}).front();
    }
    void take(Result result, std::vector<float> values, std::string text) {
        answers.push_back({static_cast<int32_t>(result), std::move(values), std::move(text)});
    }
    Service::Level level() {
        return [this](Result result, int32_t value) { take(result, {}, std::to_string(value)); };
    }
    Service::Table table() {
        return [this](Result result, const display_control::GammaLut& lut) {
            take(result, {lut.entries.data(), lut.entries.data() + lut.entries.size()}, {});
        };
    }
    Service::FeatureValues featureValues() {
        return [this](Result result, const hidl_vec<double>& values) {
            require(values.size() == 0, "a feature answers without values");
            take(result, {}, {});
        };
    }

    void compare(const char* step, const Answer& expected, const Answer& given);
    void compareAround();

    // Choices.
    uint64_t display() { return input.oneOf(kDisplays); }
    int32_t integer() { return input.oneOf(kIntegers); }
    float number();
    std::vector<float> numbers(size_t most);
    Matrix matrix();
    Table tableEntries();
    Calibration calibrationFile();
    static display_control::ColorTransformMatrix recordOf(const Matrix& matrix) { return {{matrix}}; }

    // Served operations.
    void init() { compare("init", model.init(), {service.init()}); }
    void deInit();
    void allocUserHandle();
    void freeUserHandle() { compare("freeUserHandle", {kOk}, answerOf(service.freeUserHandle(kHandle))); }
    void getNumOfDisplay();
    void getDisplayInfo();
    void setMatrix();
    void setMatrices();
    void getMatrix();
    void getMatrices();
    void setGammaTable();
    void setDeGammaTable();
    void getGammaTable();
    void getDeGammaTable();
    void setGamma();
    void setUnlimitedCT();
    void getUnlimitedCT();
    void setEyeCareCT();
    void getEyeCareCT();
    void setStandardMode();
    void setEnhanceScreenMode();
    void setSmartEnvironmentMode();
    void setCabcSysNode();
    void setCabcMode();
    void setFeature();
    void setMiscFeature();
    void getMiscFeature();
    void setAlad();
    void switchAlad(uint64_t display, uint32_t enable);
    void isAladEnable();
    void enterExclusive();
    void leaveExclusive();

    // What happens around.
    void light();
    void pass();
    void setDisplays() { composer->count = around.displays = input.oneOf(kCounts); }
    void faultComposer();
    void faultSensors();
    void publish();
    void withoutQueue() { sensors->withoutQueue = !(around.queue = input.yes()); }
    void setPanel();
    void calibrate();
    void setWhitePoint();
    void setCabcNode();
    void configureClosedLibraries();

    Input input;
    const fakes::PhoneFolder& phone;
    Surroundings around;
    Model model;
    platform::VirtualClock clock;
    const sp<fakes::FakeComposer> composer = new fakes::FakeComposer;
    const sp<fakes::FakeSensors> sensors = new fakes::FakeSensors;
    Service service;
    std::vector<Answer> answers;
    std::vector<const char*> steps;  // so far
};

const std::vector<Story::Step> Story::kSteps = {
    {"init", &Story::init},
    {"deInit", &Story::deInit},
    {"allocUserHandle", &Story::allocUserHandle},
    {"freeUserHandle", &Story::freeUserHandle},
    {"getNumOfDisplay", &Story::getNumOfDisplay},
    {"getDisplayInfo", &Story::getDisplayInfo},
    {"setColorTransformMatrix", &Story::setMatrix},
    {"setColorTransformMatrix2", &Story::setMatrices},
    {"getColorTransformMatrix", &Story::getMatrix},
    {"getColorTransformMatrix2", &Story::getMatrices},
    {"setGlobalGammaLut", &Story::setGammaTable},
    {"setGlobalDeGammaLut", &Story::setDeGammaTable},
    {"getGlobalGammaLut", &Story::getGammaTable},
    {"getGlobalDeGammaLut", &Story::getDeGammaTable},
    {"setGlobalGamma", &Story::setGamma},
    {"setUnlimitedCT", &Story::setUnlimitedCT},
    {"getUnlimitedCT", &Story::getUnlimitedCT},
    {"setEyeCareCT", &Story::setEyeCareCT},
    {"getEyeCareCT", &Story::getEyeCareCT},
    {"setStandardMode", &Story::setStandardMode},
    {"setEnhanceScreenMode", &Story::setEnhanceScreenMode},
    {"setSmartEnvironmentMode", &Story::setSmartEnvironmentMode},
    {"setCabcSysNode", &Story::setCabcSysNode},
    {"setCabcMode", &Story::setCabcMode},
    {"setFeature", &Story::setFeature},
    {"setMiscFeature", &Story::setMiscFeature},
    {"getMiscFeature", &Story::getMiscFeature},
    {"setAlad", &Story::setAlad},
    {"IsAladEnable", &Story::isAladEnable},
    {"exclusiveModeEnter", &Story::enterExclusive},
    {"exclusiveModeExit", &Story::leaveExclusive},
    {"light", &Story::light},
    {"time passes", &Story::pass},
    {"displays", &Story::setDisplays},
    {"fault of the composer", &Story::faultComposer},
    {"fault of the sensors", &Story::faultSensors},
    {"services", &Story::publish},
    {"event queue", &Story::withoutQueue},
    {"panel", &Story::setPanel},
    {"calibration", &Story::calibrate},
    {"white point", &Story::setWhitePoint},
    {"backlight node", &Story::setCabcNode},
    {"closed libraries", &Story::configureClosedLibraries},
};

constexpr const char* kCabcText = "9999\n";

Story::Story(Input bytes, const fakes::PhoneFolder& folder, uint64_t lastHandle)
    : input(bytes), phone(folder), model(around, lastHandle) {
    fakes::journal::take();
    fakes::closedLibraries() = {};
    fakes::closedLibraries().levelOf = levelOf;
    fakes::closedLibraries().writeCurve = [](int level, int32_t* curve) { curve[placeOf(level)] = level; };
    for (const auto& path : kCalibrationPaths) phone.remove(path);
    phone.remove(fakes::kPanelNameNode);
    phone.remove(fakes::kWhitePointNode);
    phone.write(fakes::kCabcNode, kCabcText);
    model.renewCabcNode(kCabcText);
    platform::setClock(&clock);
    composer->registerAsService();
    sensors->registerAsService();
}

Story::~Story() {
    platform::clearServices();
    platform::setClock(nullptr);
}

void Story::run() {
    while (!input.atEnd()) {
        const Step& step = input.oneOf(kSteps);
        steps.push_back(step.name);
        (this->*step.run)();
        compareAround();
    }
    switchAlad(0, 0);
    compareAround();
}

void Story::compare(const char* step, const Answer& expected, const Answer& given) {
    if (isSame(expected, given)) return;
    for (const char* const name : steps) fprintf(stderr, "%s; ", name);
    require(false, std::string(step) + " answers " + textOf(expected) + " and not " + textOf(given));
}

// What was told since the last time, the tables that the composer holds, the node, and what the closed libraries got.
void Story::compareAround() {
    clock.settle();
    const Lines expected = model.takeTold();
    Lines happened = fakes::journal::take();
    happened.erase(std::remove(happened.begin(), happened.end(), "sensors queue gone"), happened.end());
    if (happened != expected) {
        for (const char* const name : steps) fprintf(stderr, "%s; ", name);
        for (const auto& line : expected) fprintf(stderr, "\nexpected  %s", line.c_str());
        for (const auto& line : happened) fprintf(stderr, "\nhappened  %s", line.c_str());
        require(false, "what is told is what the model says");
    }
    require(service.currentScreenMode() == model.currentScreenMode(), "the screen mode");
    for (const auto& [number, entries] : model.gammaTables())
        require(isSame(entries.data(), composer->gamma[number].entries.data(), entries.size()), "the gamma table");
    for (const auto& [number, entries] : model.deGammaTables())
        require(isSame(entries.data(), composer->deGamma[number].entries.data(), entries.size()), "the de-gamma table");
    require(isSame(&model.whitePoint().whiteX, &fakes::closedLibraries().whitePoint.whiteX,
                   sizeof(android::WhitePointCalibrateParam) / sizeof(float)),
            "the white point to calibrate");
    const auto& coefficients = fakes::closedLibraries().eyeCareCoeffs;
    require(model.eyeCareCoeffs().size() == coefficients.size() &&
                isSame(model.eyeCareCoeffs().data(), coefficients.data(), coefficients.size()),
            "the eye-care coefficients");
    if (around.cabcNode && !expected.empty())
        require(phone.read(fakes::kCabcNode) == model.cabcText(), "the backlight node's text");
}

// --- Choices ---

// One of those that matter, or from -3 to 3.
float Story::number() {
    const size_t choice = input.byte();
    constexpr float kStep = 1.0F / 32;
    return choice < std::size(kFloats) ? kFloats[choice] : (static_cast<float>(choice) - 128) * kStep;
}

// So many at most, and often none.
std::vector<float> Story::numbers(size_t most) {
    std::vector<float> values(input.yes() ? most - input.below(most + 1) % 3 : 0);
    for (float& value : values) value = number();
    return values;
}

Matrix Story::matrix() {
    Matrix result{};
    for (float& value : result) value = number();
    return result;
}

Table Story::tableEntries() {
    const float first = number();
    const float step = number();
    Table entries{};
    for (size_t i = 0; i < entries.size(); ++i) entries[i] = first + step * static_cast<float>(i);
    return entries;
}

Calibration Story::calibrationFile() {
    Calibration file;
    constexpr Calibration::File kFiles[] = {Calibration::File::GOOD, Calibration::File::GOOD, Calibration::File::GOOD,
                                            Calibration::File::MISSING, Calibration::File::MALFORMED};
    file.file = input.oneOf(kFiles);
    if (file.file != Calibration::File::GOOD) return file;
    constexpr size_t kMost = 10;  // one too many
    file.whitePoint = numbers(kMost);
    file.colorCorrection = numbers(kMost);
    file.whitePointParams = numbers(kMost);
    for (auto* const table : {&file.calibrated, &file.tuned}) {
        const size_t size = input.oneOf(kTableSizes);
        table->assign(size, number());
    }
    for (size_t left = input.below(3); left > 0; --left) file.endPoints.push_back(integer());
    constexpr size_t kEyeCareSizes[] = {0, 37, 38, 40};
    const double base = static_cast<double>(number());
    for (size_t left = input.oneOf(kEyeCareSizes); left > 0; --left)
        file.eyeCare.push_back(static_cast<double>(left) * 100.7 + base);
    return file;
}

// --- Served operations ---

void Story::deInit() {
    service.deInit();
    model.deInit();
}

void Story::allocUserHandle() {
    const auto status = service.allocUserHandle(
        input.byte(), [this](Result result, uint64_t handle) { take(result, {}, std::to_string(handle)); });
    compare("allocUserHandle", model.allocUserHandle(), answerOf(status));
}

void Story::getNumOfDisplay() {
    const auto status = service.getNumOfDisplay(
        kHandle, [this](Result result, uint32_t count) { take(result, {}, std::to_string(count)); });
    compare("getNumOfDisplay", model.getNumOfDisplay(), answerOf(status));
}

void Story::getDisplayInfo() {
    const uint64_t d = display();
    const auto status =
        service.getDisplayInfo(kHandle, d, [this](Result result, const display_control::DisplayInfo& info) {
            std::string text;
            for (size_t i = 0; i < 3; ++i) text += std::to_string(info.values[i]) + " ";
            take(result, {}, text + info.name.c_str());
        });
    compare("getDisplayInfo", model.getDisplayInfo(d), answerOf(status));
}

void Story::setMatrix() {
    const uint64_t d = display();
    const Matrix last = matrix();
    compare("setColorTransformMatrix", model.setColorTransformMatrix2(d, kIdentity, last),
            answerOf(service.setColorTransformMatrix(kHandle, d, recordOf(last))));
}

void Story::setMatrices() {
    const uint64_t d = display();
    const Matrix first = matrix();
    const Matrix last = matrix();
    compare("setColorTransformMatrix2", model.setColorTransformMatrix2(d, first, last),
            answerOf(service.setColorTransformMatrix2(kHandle, d, recordOf(first), recordOf(last))));
}

void Story::getMatrix() {
    const uint64_t d = display();
    const auto status = service.getColorTransformMatrix(
        kHandle, d, [this](Result result, const display_control::ColorTransformMatrix& first) {
            take(result, {first.elements.data(), first.elements.data() + first.elements.size()}, {});
        });
    Answer expected = model.getColorTransformMatrix2(d);
    expected.values.resize(kIdentity.size());  // the first matrix
    compare("getColorTransformMatrix", expected, answerOf(status));
}

void Story::getMatrices() {
    const uint64_t d = display();
    const auto status = service.getColorTransformMatrix2(
        kHandle, d,
        [this](Result result, const display_control::ColorTransformMatrix& first,
               const display_control::ColorTransformMatrix& last) {
            std::vector<float> both(first.elements.data(), first.elements.data() + first.elements.size());
            both.insert(both.end(), last.elements.data(), last.elements.data() + last.elements.size());
            take(result, both, {});
        });
    compare("getColorTransformMatrix2", model.getColorTransformMatrix2(d), answerOf(status));
}

void Story::setGammaTable() {
    const uint64_t d = display();
    const Table entries = tableEntries();
    compare("setGlobalGammaLut", model.setGlobalGammaLut(d, entries),
            answerOf(service.setGlobalGammaLut(kHandle, d, {{entries}})));
}

void Story::setDeGammaTable() {
    const uint64_t d = display();
    const Table entries = tableEntries();
    compare("setGlobalDeGammaLut", model.setGlobalDeGammaLut(d, entries),
            answerOf(service.setGlobalDeGammaLut(kHandle, d, {{entries}})));
}

void Story::getGammaTable() {
    const uint64_t d = display();
    const auto status = service.getGlobalGammaLut(kHandle, d, table());
    compare("getGlobalGammaLut", model.getGlobalGammaLut(d), answerOf(status));
}

void Story::getDeGammaTable() {
    const uint64_t d = display();
    const auto status = service.getGlobalDeGammaLut(kHandle, d, table());
    compare("getGlobalDeGammaLut", model.getGlobalDeGammaLut(d), answerOf(status));
}

void Story::setGamma() {
    const uint64_t d = display();
    const float exponent = number();
    compare("setGlobalGamma", model.setGlobalGamma(d, exponent),
            answerOf(service.setGlobalGamma(kHandle, d, exponent)));
}

void Story::setUnlimitedCT() {
    const uint64_t d = display();
    const int32_t value = integer();
    compare("setUnlimitedCT", model.setUnlimitedCT(d, value), answerOf(service.setUnlimitedCT(kHandle, d, value)));
}

void Story::getUnlimitedCT() {
    const uint64_t d = display();
    const auto status = service.getUnlimitedCT(kHandle, d, level());
    compare("getUnlimitedCT", model.getUnlimitedCT(d), answerOf(status));
}

void Story::setEyeCareCT() {
    const uint64_t d = display();
    const int32_t value = integer();
    compare("setEyeCareCT", model.setEyeCareCT(d, value), answerOf(service.setEyeCareCT(kHandle, d, value)));
}

void Story::getEyeCareCT() {
    const uint64_t d = display();
    const auto status = service.getEyeCareCT(kHandle, d, level());
    compare("getEyeCareCT", model.getEyeCareCT(d), answerOf(status));
}

void Story::setStandardMode() {
    const uint64_t d = display();
    compare("setStandardMode", model.setStandardMode(d), answerOf(service.setStandardMode(kHandle, d, integer())));
}

void Story::setEnhanceScreenMode() {
    const uint64_t d = display();
    compare("setEnhanceScreenMode", model.setEnhanceScreenMode(d),
            answerOf(service.setEnhanceScreenMode(kHandle, d, integer())));
}

void Story::setSmartEnvironmentMode() {
    const uint64_t d = display();
    compare("setSmartEnvironmentMode", model.setSmartEnvironmentMode(d),
            answerOf(service.setSmartEnvironmentMode(kHandle, d, integer())));
}

void Story::setCabcSysNode() {
    const uint64_t d = display();
    const int32_t value = integer();
    compare("setCabcSysNode", model.setCabcSysNode(value), answerOf(service.setCabcSysNode(kHandle, d, value)));
}

void Story::setCabcMode() {
    const uint64_t d = display();
    const int32_t mode = integer();
    compare("setCabcMode", model.setCabcMode(mode), answerOf(service.setCabcMode(kHandle, d, mode)));
}

void Story::setFeature() {
    const uint64_t d = display();
    const int32_t feature = integer();
    const int32_t value = integer();
    compare("setFeature", model.setFeature(d, feature, value),
            answerOf(service.setFeature(kHandle, d, feature, value, integer())));
}

void Story::setMiscFeature() {
    const uint64_t d = display();
    const int32_t feature = integer();
    constexpr size_t kSizes[] = {2, 2, 2, 0, 1, 3};
    std::vector<double> values(input.oneOf(kSizes));
    for (double& value : values) value = static_cast<double>(number());
    const auto status = service.setMiscFeature(kHandle, d, feature, values, featureValues());
    compare("setMiscFeature", model.setMiscFeature(d, feature, values), answerOf(status));
}

void Story::getMiscFeature() {
    const uint64_t d = display();
    const auto status = service.getMiscFeature(kHandle, d, integer(), featureValues());
    compare("getMiscFeature", {kFailed}, answerOf(status));
}

void Story::setAlad() {
    constexpr uint32_t kValues[] = {1, 1, 1, 0, 0, 7, UINT32_MAX};
    const uint64_t d = display();
    switchAlad(d, input.oneOf(kValues));
}

void Story::switchAlad(uint64_t display, uint32_t enable) {
    compare("setAlad", model.setAlad(display, enable), answerOf(service.setAlad(kHandle, display, enable)));
}

void Story::isAladEnable() {
    compare("IsAladEnable", model.isAladEnable(), answerOf(service.IsAladEnable(kHandle, display())));
}

void Story::enterExclusive() {
    compare("exclusiveModeEnter", model.exclusiveModeEnter(),
            answerOf(service.exclusiveModeEnter(kHandle, input.byte())));
}

void Story::leaveExclusive() {
    compare("exclusiveModeExit", model.exclusiveModeExit(), answerOf(service.exclusiveModeExit(kHandle, input.byte())));
}

// --- What happens around ---

void Story::light() {
    const float lux = input.oneOf(kLights);
    sensors->light(lux);
    model.light(lux);
}

void Story::pass() {
    const int64_t duration = input.oneOf(kDurations);
    clock.advance(std::chrono::milliseconds(duration));
    model.pass(duration);
}

void Story::faultComposer() {
    const std::string call = input.oneOf(kComposerCalls);
    around.composerFaults[call] = input.oneOf(kFaults);
    composer->fault(call + "(", around.composerFaults[call]);
}

void Story::faultSensors() {
    const std::string call = input.oneOf(kSensorCalls);
    around.sensorFaults[call] = input.oneOf(kFaults);
    sensors->fault(call + "(", around.sensorFaults[call]);
}

// Which services can be found from now on.
void Story::publish() {
    around.composer = input.yes();
    around.sensors = input.yes();
    platform::clearServices();
    if (around.composer) composer->registerAsService();
    if (around.sensors) sensors->registerAsService();
}

void Story::setPanel() {
    around.calibrationFile = input.below(kCalibrationFiles);
    phone.write(fakes::kPanelNameNode, kPanels[around.calibrationFile]);
}

void Story::calibrate() {
    const size_t index = input.below(kCalibrationFiles);
    Calibration& file = around.calibrations[index];
    file = calibrationFile();
    phone.remove(kCalibrationPaths[index]);
    if (file.file != Calibration::File::MISSING) phone.write(kCalibrationPaths[index], textOf(file));
}

void Story::setWhitePoint() {
    constexpr const char* kTexts[] = {"x=313,y=329\n", "x=-5,y= 99999999999", "x=313", "y=1,x=2", ""};
    const size_t choice = input.below(std::size(kTexts) + 1);
    phone.remove(fakes::kWhitePointNode);
    around.whitePoint.reset();
    if (choice == std::size(kTexts)) return;
    around.whitePoint = kTexts[choice];
    phone.write(fakes::kWhitePointNode, kTexts[choice]);
}

void Story::setCabcNode() {
    around.cabcNode = input.yes();
    phone.remove(fakes::kCabcNode);
    if (!around.cabcNode) return;
    phone.write(fakes::kCabcNode, kCabcText);
    model.renewCabcNode(kCabcText);
}

void Story::configureClosedLibraries() {
    auto& libraries = fakes::closedLibraries();
    libraries.error = input.yes() ? integer() : 0;
    constexpr size_t kGains = 3;
    const auto some = [this](size_t count) {
        std::vector<float> values(input.yes() ? count : 0);
        for (float& value : values) value = number();
        return values;
    };
    libraries.gains = around.gains = some(kGains);
    libraries.coefficients = around.coefficients = some(kIdentity.size());
    libraries.whiteGains = around.whiteGains = some(kGains);
}

// The last handle of the process.
uint64_t allocateHandle() {
    uint64_t last = 0;
    Service().allocUserHandle(0, [&last](Result, uint64_t handle) { last = handle; }).isOk();
    return last;
}

}  // namespace

}  // namespace fuzz

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const fakes::PhoneFolder kPhone;
    fuzz::beQuiet();
    fuzz::Story(fuzz::Input(data, size), kPhone, fuzz::allocateHandle()).run();
    return 0;
}
