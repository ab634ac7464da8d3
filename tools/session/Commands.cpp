// SPDX-License-Identifier: Apache-2.0
// The table of commands.
#include <algorithm>
#include <array>
#include <charconv>
#include <fstream>
#include <iomanip>
#include <utility>

#include "tools/session/Command.h"
#include "tools/session/Session.h"
#include "tools/text/Text.h"

namespace simulator {

namespace {

using display_control::ColorTransformMatrix;
using display_control::DisplayInfo;
using display_control::GammaLut;
using display_control::Result;
using Service = display_control::IDisplayControl;
using ::android::hardware::hidl_vec;
using ::android::hardware::Return;

constexpr size_t kMatrix = 9;
constexpr uint64_t kMostDisplays = 1024;
constexpr size_t kMostValues = 16;

Argument display() {
    return {"display", Argument::Kind::DISPLAY};
}

Argument integer(std::string_view name) {
    return {name, Argument::Kind::INTEGER};
}

// The operations of the modes take a number that they do not use.
Argument ignored() {
    return {"ignored", Argument::Kind::INTEGER, 1, /*optional=*/true};
}

Argument unsigned32(std::string_view name) {
    return {name, Argument::Kind::UNSIGNED, 1, /*optional=*/false, UINT32_MAX};
}

Argument word(std::string_view name, std::vector<std::string_view> words, bool optional = false, uint64_t max = 0) {
    return {name, Argument::Kind::WORD, 1, optional, max, std::move(words)};
}

Argument phoneFile() {
    return word("file", {"panel", "cabc", "whitepoint", "calibration"});
}

Argument matrix(std::string_view name) {
    return {name, Argument::Kind::FLOAT, kMatrix};
}

ColorTransformMatrix matrixFrom(const Values& values, size_t index) {
    ColorTransformMatrix result;
    for (size_t i = 0; i < kMatrix; ++i) result.elements[i] = values.real(index + i);
    return result;
}

// 4096 numbers, separated by white space.
GammaLut readTable(const std::string& file) {
    constexpr int kLongest = 128;  // characters of a number
    requireFile(file, "a file of 4096 numbers");
    GammaLut table;
    std::ifstream stream(file);
    for (size_t i = 0; i < table.entries.size(); ++i) {
        std::string word;
        if (!(stream >> std::setw(kLongest) >> word))
            throw ScriptError(file + ": holds " + std::to_string(i) + " numbers; expected 4096");
        const char* const end = word.data() + word.size();
        const auto [rest, error] = std::from_chars(word.data(), end, table.entries[i]);
        const bool isWhole = stream.eof() || std::isspace(stream.peek()) != 0;
        if (error != std::errc() || rest != end || !isWhole)
            throw ScriptError(file + ": " + inQuotes(word) +
                              " is not a number of single precision; expected 4096 such numbers");
    }
    if (std::string word; stream >> std::setw(kLongest) >> word)
        throw ScriptError(file + ": holds more than 4096 numbers; expected 4096");
    return table;
}

template <typename T>
void report(Session& session, Return<T> answer) {
    session.answer(static_cast<Result>(answer.withDefault(T{})));  // a served operation never fails at the transport
}

int32_t valueOrZero(const Values& values, size_t index) {
    return index < values.size() ? values.integer(index) : 0;
}

// --- The served operations ---

void initService(Session& session, const Values&) {
    const int result = session.library().init();
    session.answer(int64_t{result});
    if (result == 0) session.noteCalibration();
}

void deInitService(Session& session, const Values&) {
    session.library().deInit();
    session.answer(std::string("done"));
}

void allocUserHandle(Session& session, const Values&) {
    session.service().allocUserHandle(0, [&session](Result result, uint64_t handle) {
        session.setHandle(handle);
        session.answer(result, {{"handle", handle}});
    });
}

void freeUserHandle(Session& session, const Values&) {
    report(session, session.service().freeUserHandle(session.handle()));
}

void getNumOfDisplay(Session& session, const Values&) {
    session.service().getNumOfDisplay(session.handle(), [&session](Result result, uint32_t count) {
        session.answer(result, {{"count", int64_t{count}}});
    });
}

void getDisplayInfo(Session& session, const Values& values) {
    session.service().getDisplayInfo(
        session.handle(), values.number(0), [&session](Result result, const DisplayInfo& info) {
            const std::vector<int64_t> numbers(info.values.data(), info.values.data() + info.values.size());
            session.answer(result, {{"name", std::string(info.name)}, {"values", numbers}});
        });
}

void setColorTransformMatrix(Session& session, const Values& values) {
    report(session,
           session.service().setColorTransformMatrix(session.handle(), values.number(0), matrixFrom(values, 1)));
}

void setColorTransformMatrix2(Session& session, const Values& values) {
    report(session, session.service().setColorTransformMatrix2(session.handle(), values.number(0),
                                                               matrixFrom(values, 1), matrixFrom(values, 1 + kMatrix)));
}

void getColorTransformMatrix(Session& session, const Values& values) {
    session.service().getColorTransformMatrix(session.handle(), values.number(0),
                                              [&session](Result result, const ColorTransformMatrix& first) {
                                                  session.answer(result, {{"first", matrixOf(first.elements.data())}});
                                              });
}

void getColorTransformMatrix2(Session& session, const Values& values) {
    session.service().getColorTransformMatrix2(
        session.handle(), values.number(0),
        [&session](Result result, const ColorTransformMatrix& first, const ColorTransformMatrix& last) {
            session.answer(result,
                           {{"first", matrixOf(first.elements.data())}, {"last", matrixOf(last.elements.data())}});
        });
}

template <auto Operation>
void setTable(Session& session, const Values& values) {
    const GammaLut table = readTable(values.text(1));
    report(session, (session.service().*Operation)(session.handle(), values.number(0), table));
}

template <auto Operation>
void getTable(Session& session, const Values& values) {
    (session.service().*Operation)(session.handle(), values.number(0),
                                   [&session](Result result, const GammaLut& table) {
                                       session.answer(result, {{"table", tableOf(table.entries.data())}});
                                   });
}

void setGlobalGamma(Session& session, const Values& values) {
    report(session, session.service().setGlobalGamma(session.handle(), values.number(0), values.real(1)));
}

// Operations with a display and one integer, which may be left out where it is ignored.
template <auto Operation>
void setInteger(Session& session, const Values& values) {
    report(session, (session.service().*Operation)(session.handle(), values.number(0), valueOrZero(values, 1)));
}

template <auto Operation>
void getLevel(Session& session, const Values& values) {
    (session.service().*Operation)(session.handle(), values.number(0), [&session](Result result, int32_t level) {
        session.answer(result, {{"level", int64_t{level}}});
    });
}

void setAlad(Session& session, const Values& values) {
    report(session,
           session.service().setAlad(session.handle(), values.number(0), static_cast<uint32_t>(values.number(1))));
}

void isAladEnable(Session& session, const Values& values) {
    const int32_t enabled = session.service().IsAladEnable(session.handle(), values.number(0)).withDefault(0);
    session.answer(int64_t{enabled});
}

void enterExclusive(Session& session, const Values& values) {
    report(session, session.service().exclusiveModeEnter(session.handle(), static_cast<uint32_t>(values.number(0))));
}

void leaveExclusive(Session& session, const Values& values) {
    const Result result =
        session.service().exclusiveModeExit(session.handle(), static_cast<uint32_t>(values.number(0)));
    session.answer(result);
    if (result == Result::OK) session.noteCalibration();
}

void setFeature(Session& session, const Values& values) {
    report(session, session.service().setFeature(session.handle(), values.number(0), values.integer(1),
                                                 values.integer(2), values.integer(3)));
}

Service::getMiscFeature_cb answerTo(Session& session) {
    return [&session](Result result, const hidl_vec<double>& values) {
        session.answer(result, {{"values", std::vector<float>(values.begin(), values.end())}});
    };
}

void setMiscFeature(Session& session, const Values& values) {
    constexpr size_t kFirst = 2;
    hidl_vec<double> given;
    given.resize(values.size() - kFirst);
    for (size_t i = 0; i < given.size(); ++i) given[i] = values.wide(kFirst + i);
    session.service().setMiscFeature(session.handle(), values.number(0), values.integer(1), given, answerTo(session));
}

void getMiscFeature(Session& session, const Values& values) {
    session.service().getMiscFeature(session.handle(), values.number(0), values.integer(1), answerTo(session));
}

// --- What happens around the service ---

void setLight(Session& session, const Values& values) {
    session.phone().sensors().light(values.real(0));
}

void wait(Session& session, const Values& values) {
    session.wait(values.duration(0));
}

// The words for what fails, and for how it fails.
template <typename Enumerator>
using Words = std::vector<std::pair<std::string_view, Enumerator>>;

const Words<ComposerOperation> kComposerCalls = [] {
    Words<ComposerOperation> calls;
    for (const std::string_view name : kComposerOperations)
        calls.emplace_back(name, static_cast<ComposerOperation>(calls.size()));
    return calls;
}();
const Words<SensorOperation> kSensorSteps = {{"find", SensorOperation::GET_DEFAULT_SENSOR},
                                             {"queue", SensorOperation::CREATE_EVENT_QUEUE},
                                             {"enable", SensorOperation::ENABLE_SENSOR},
                                             {"disable", SensorOperation::DISABLE_SENSOR}};
// Those that return a result.
const Words<ClosedFunction> kClosedResults = {{"setParams", ClosedFunction::SET_PARAMS},
                                              {"getUnlimitedCTParams", ClosedFunction::GET_UNLIMITED_CT_PARAMS},
                                              {"setEyeCareParamsOled", ClosedFunction::SET_EYE_CARE_PARAMS_OLED},
                                              {"getEyeCareCoeffOled", ClosedFunction::GET_EYE_CARE_COEFF_OLED},
                                              {"getAGTMLevel", ClosedFunction::GET_AGTM_LEVEL},
                                              {"getAGTMCurveParams", ClosedFunction::GET_AGTM_CURVE_PARAMS},
                                              {"WhitePointCalibrate", ClosedFunction::WHITE_POINT_CALIBRATE}};
const Words<Failure> kFailures = {{"refused", Failure::REFUSED},
                                  {"no-callback", Failure::NO_CALLBACK},
                                  {"unreached", Failure::TRANSPORT_BEFORE},
                                  {"answer-lost", Failure::TRANSPORT_AFTER}};
constexpr std::string_view kNoService = "service";
constexpr std::string_view kNoQueue = "no-queue";
constexpr uint64_t kLastCall = 1'000'000;

template <typename Enumerator>
std::vector<std::string_view> wordsOf(const Words<Enumerator>& rows, std::vector<std::string_view> words = {}) {
    for (const auto& row : rows) words.push_back(row.first);
    return words;
}

// Null if no row has that word.
template <typename Enumerator>
const Enumerator* find(const Words<Enumerator>& rows, std::string_view word) {
    const auto row = std::find_if(rows.begin(), rows.end(), [word](const auto& each) { return each.first == word; });
    return row == rows.end() ? nullptr : &row->second;
}

std::vector<Argument> faultArguments(std::string_view what, std::vector<std::string_view> calls) {
    return {word("state", {"stop", "start", "fail"}),
            word(what, std::move(calls), true, kLastCall),
            word("how", wordsOf(kFailures), true),
            {"result", Argument::Kind::INTEGER, 1, true}};
}

const std::string kFailureHelp =
    "A number makes one call fail, of whatever kind: 1 is the next. Failures add up\nuntil start.\n"
    "HOW a call fails:\n"
    "  refused      it returns an error, RESULT if given, and a setter has no effect\n"
    "               (the default)\n"
    "  no-callback  a getter returns without its callback\n"
    "  unreached    the transport fails, and the call has no effect\n"
    "  answer-lost  the call has its effect, then the transport fails\n";

const std::string kFeatureHelp =
    "FEATURE  0 smart environment mode, 1 enhanced mode, 2 standard mode,\n"
    "         3 eye care with level VALUE, 7 backlight control with mode VALUE,\n"
    "         23 colour temperature with level VALUE\n";

// Throws for a fault that would do nothing.
void checkFail(const Values& values, const std::string& command) {
    const auto textAt = [&values](size_t index) { return values.size() > index ? values.text(index) : ""; };
    const std::string state = textAt(0);
    const std::string what = textAt(1);
    const std::string how = textAt(2);
    const auto require = [&command](bool good, const std::string& message) {
        if (!good) throw ScriptError(command + ": " + message);
    };
    require(state == "fail" || what.empty(), state + " takes nothing more; expected " + command + " " + state);
    require(state != "fail" || !what.empty(), "what fails is missing; expected it after fail");
    const bool isCall = what != kNoService && what != kNoQueue;
    require(isCall || how.empty(), what + " fails in one way only; expected nothing after it");
    const bool isSetter = what.rfind("set", 0) == 0 || what == "enable" || what == "disable";
    require(!isSetter || how != "no-callback", what + " has no callback; expected refused, unreached or answer-lost");
    require(values.size() <= 3 || how == "refused", how + " takes no RESULT; expected refused, or no RESULT");
    require(values.size() <= 3 || values.integer(3) != 0, "RESULT 0 is success; expected another number");
}

// names are those of the service's calls; any other name is the number of a call.
template <typename Operation, typename Result>
void addFailure(Faults<Operation, Result>& service, const Words<Operation>& names, const Values& values) {
    const Failure failure = values.size() > 2 ? *find(kFailures, values.text(2)) : Failure::REFUSED;
    if (const Operation* const operation = find(names, values.text(1))) {
        service.fail(*operation, failure);
    } else {
        service.failOnce(std::stoull(values.text(1)), failure);
    }
    if (values.size() > 3) service.refuseWith(static_cast<Result>(values.integer(3)));
}

// stop: events stop; start: they come, and nothing fails any more; fail: something fails besides what fails already.
void switchSensor(Session& session, const Values& values) {
    Phone& phone = session.phone();
    const std::string& state = values.text(0);
    if (state != "fail") phone.sensors().setDelivering(state == "start");
    if (state == "start") {
        phone.setSensorsPresent(true);
        phone.sensors().setWithoutQueue(false);
        phone.sensors().recover();
    }
    if (state != "fail") return;
    if (values.text(1) == kNoService) return phone.setSensorsPresent(false);
    if (values.text(1) == kNoQueue) return phone.sensors().setWithoutQueue(true);
    addFailure(phone.sensors(), kSensorSteps, values);
}

// stop: the process ends; start: one runs, and nothing fails any more; fail: something fails besides what fails
// already.
void switchComposer(Session& session, const Values& values) {
    Phone& phone = session.phone();
    if (values.text(0) == "stop") return phone.stopComposer();
    if (values.text(0) == "start") {
        phone.composer().recover();
        phone.setComposerPresent(true);
        return phone.startComposer();
    }
    if (values.text(1) == kNoService) return phone.setComposerPresent(false);
    addFailure(phone.composer(), kComposerCalls, values);
}

void failClosed(Session& session, const Values& values) {
    const auto result = values.size() > 1 ? std::optional<int>(values.integer(1)) : std::nullopt;
    session.phone().closed().fail(*find(kClosedResults, values.text(0)), result);
}

void setDisplays(Session& session, const Values& values) {
    session.phone().composer().setDisplayCount(static_cast<uint32_t>(values.number(0)));
}

void setPanel(Session& session, const Values& values) {
    session.phone().files().write(kPanelNameNode, values.text(0) + "\n");
}

void setCalibration(Session& session, const Values& values) {
    requireFile(values.text(0), "a calibration file");
    const std::string path = session.phone().files().installCalibration(values.text(0));
    session.report(InstalledFile{path, values.text(0)});
}

void setWhitePoint(Session& session, const Values& values) {
    session.phone().files().write(
        kWhitePointNode, "x=" + std::to_string(values.integer(0)) + ",y=" + std::to_string(values.integer(1)) + "\n");
}

constexpr std::string_view kCalibration = "calibration";

// The phone's path of a file that a script names; nothing is there afterwards.
std::string removed(Session& session, const std::string& name) {
    PhoneFiles& files = session.phone().files();
    std::string path = name == kCalibration ? files.calibrationPath() : std::string(nodePath(name));
    files.remove(path);
    return path;
}

void removeFile(Session& session, const Values& values) {
    removed(session, values.text(0));
}

void makeFolder(Session& session, const Values& values) {
    session.phone().files().makeFolder(removed(session, values.text(0)));
}

void writeFile(Session& session, const Values& values) {
    const std::string path = removed(session, values.text(0));
    session.phone().files().write(path, values.size() > 1 ? bytesOf(values.text(1)) : "");
}

void writePicture(Session& session, const Values& values) {
    session.writePicture(values.text(0), values.size() > 1 ? values.number(1) : 0);
}

}  // namespace

const std::vector<Command>& commands() {
    using Kind = Argument::Kind;
    static const std::vector<Command> table = {
        {"init", {}, "start the service: find the composer and apply the panel's calibration", initService, "service"},
        {"deInit", {}, "stop the service: release the composer", deInitService},
        {"allocUserHandle", {}, "get a user handle, which later commands use", allocUserHandle},
        {"freeUserHandle", {}, "release the user handle", freeUserHandle},
        {"getNumOfDisplay", {}, "the number of displays that the service knows", getNumOfDisplay},
        {"getDisplayInfo", {display()}, "a display's name, width, height and refresh rate", getDisplayInfo},
        {"setColorTransformMatrix",
         {display(), matrix("element")},
         "set the composer's last matrix, by rows, and its first matrix to the identity",
         setColorTransformMatrix,
         "matrices and tables"},
        {"getColorTransformMatrix", {display()}, "the composer's first matrix", getColorTransformMatrix},
        {"setColorTransformMatrix2",
         {display(), matrix("first"), matrix("last")},
         "set both of the composer's matrices, by rows",
         setColorTransformMatrix2},
        {"getColorTransformMatrix2", {display()}, "both of the composer's matrices", getColorTransformMatrix2},
        {"setGlobalGammaLut",
         {display(), {"file", Kind::FILE}},
         "set the composer's gamma table to the 4096 numbers of a file",
         setTable<&Service::setGlobalGammaLut>},
        {"getGlobalGammaLut", {display()}, "the composer's gamma table", getTable<&Service::getGlobalGammaLut>},
        {"setGlobalDeGammaLut",
         {display(), {"file", Kind::FILE}},
         "set the composer's de-gamma table to the 4096 numbers of a file",
         setTable<&Service::setGlobalDeGammaLut>},
        {"getGlobalDeGammaLut", {display()}, "the composer's de-gamma table", getTable<&Service::getGlobalDeGammaLut>},
        {"setGlobalGamma",
         {display(), {"exponent", Kind::FLOAT}},
         "set the composer's gamma table to a power function",
         setGlobalGamma},
        {"setUnlimitedCT",
         {display(), integer("level")},
         "set the colour temperature: -100 warm, 0 neutral, 100 cold",
         setInteger<&Service::setUnlimitedCT>,
         "colour temperature and screen modes"},
        {"getUnlimitedCT", {display()}, "the colour temperature level", getLevel<&Service::getUnlimitedCT>},
        {"setEyeCareCT",
         {display(), integer("level")},
         "set eye care: 0 off, 100 warmest",
         setInteger<&Service::setEyeCareCT>},
        {"getEyeCareCT", {display()}, "the eye-care level", getLevel<&Service::getEyeCareCT>},
        {"setStandardMode",
         {display(), ignored()},
         "standard mode: the panel's calibrated colours",
         setInteger<&Service::setStandardMode>},
        {"setEnhanceScreenMode",
         {display(), ignored()},
         "enhanced mode: the panel's native colours",
         setInteger<&Service::setEnhanceScreenMode>},
        {"setSmartEnvironmentMode",
         {display(), ignored()},
         "smart environment mode: the white point that the driver reports, calibrated",
         setInteger<&Service::setSmartEnvironmentMode>},
        {"setCabcMode",
         {display(), integer("mode")},
         "set the backlight control mode, 0 to 4; it works in smart environment mode",
         setInteger<&Service::setCabcMode>},
        {"setCabcSysNode",
         {display(), integer("level")},
         "write a level to the backlight control node",
         setInteger<&Service::setCabcSysNode>},

        {"setAlad",
         {display(), unsigned32("enable")},
         "switch the ambient-light display off (0) or on (any other value)",
         setAlad,
         "ambient light, exclusive mode and features"},
        {"IsAladEnable", {display()}, "1 while the ambient-light display is on, otherwise 0", isAladEnable},
        {"exclusiveModeEnter", {unsigned32("ignored")}, "clear every adjustment of display 0", enterExclusive},
        {"exclusiveModeExit",
         {unsigned32("ignored")},
         "apply the calibration and the colour temperatures again",
         leaveExclusive},
        {"setFeature",
         {display(), integer("feature"), integer("value"), integer("ignored")},
         "call an operation by its number",
         setFeature,
         "",
         nullptr,
         kFeatureHelp},
        {"setMiscFeature",
         {display(), integer("feature"), {"value", Kind::DOUBLE, kMostValues, true}},
         "call an operation by its number, with a list of two values; the second one is ignored",
         setMiscFeature,
         "",
         nullptr,
         kFeatureHelp},
        {"getMiscFeature", {display(), integer("feature")}, "always fails: no feature can be read", getMiscFeature},

        {"wait", {{"duration", Kind::DURATION}}, "let time pass", wait, "time and light"},
        {"light", {{"lux", Kind::FLOAT}}, "set the light that falls on the phone", setLight},
        {"sensor", faultArguments("step", wordsOf(kSensorSteps, {kNoService, kNoQueue})),
         "stop light events, make a step of using the sensor fail, or end all this", switchSensor, "",
         [](const Values& values) { checkFail(values, "sensor"); },
         kFailureHelp + "  service      as STEP: the sensor service is not found\n"
                        "  no-queue     as STEP: the queue is created, and none is returned\n"},
        {"composer", faultArguments("call", wordsOf(kComposerCalls, {kNoService})),
         "stop the composer's process, make a call fail, or start the process and end all failures", switchComposer,
         "the phone around the service", [](const Values& values) { checkFail(values, "composer"); },
         kFailureHelp + "  service      as CALL: the composer runs and is not found\n"
                        "After stop and start, the service finds the new process at its next init.\n"},
        {"closed",
         {word("function", wordsOf(kClosedResults)), {"result", Kind::INTEGER, 1, true}},
         "make a function of a closed library return RESULT and do nothing; without RESULT it works again",
         failClosed,
         "",
         nullptr,
         "Functions are called by:\n"
         "  setParams, setEyeCareParamsOled           init\n"
         "  getUnlimitedCTParams                      setUnlimitedCT\n"
         "  getEyeCareCoeffOled                       setEyeCareCT\n"
         "  WhitePointCalibrate                       setSmartEnvironmentMode\n"
         "  getAGTMLevel, getAGTMCurveParams          setAlad, while it is on\n"},
        {"threads",
         {word("state", {"fail", "start"})},
         "let no thread start, or let threads start again",
         [](Session& session, const Values& values) {
             session.phone().clock().refuseThreads(values.text(0) == "fail");
         }},
        {"displays",
         {{"count", Kind::UNSIGNED, 1, false, kMostDisplays}},
         "set the number of the composer's displays",
         setDisplays},
        {"panel", {{"name", Kind::TEXT}}, "set the name that the panel's driver reports", setPanel},
        {"whitepoint",
         {integer("x"), integer("y")},
         "set the white point that the driver reports, CIE xy in thousandths",
         setWhitePoint},
        {"calibration", {{"file", Kind::FILE}}, "replace the panel's calibration file by FILE", setCalibration},
        {"remove", {phoneFile()}, "remove a driver's node or the panel's calibration file", removeFile},
        {"folder", {phoneFile()}, "replace a driver's node or the panel's calibration file by a folder", makeFolder},
        {"write",
         {phoneFile(), {"text", Kind::TEXT, 1, true}},
         "write TEXT to a driver's node or the panel's calibration file; without TEXT it is empty",
         writeFile,
         "",
         nullptr,
         "In TEXT, \\n is a line feed and \\x23 the byte 23 (hexadecimal).\n"},

        {"picture",
         {{"name", Kind::NAME}, {"display", Kind::DISPLAY, 1, true}},
         "write the picture as the display shows it now to NAME.png",
         writePicture,
         "output"},
        {"show",
         {},
         "the state of the service and of the composer",
         [](Session& session, const Values&) { session.show(); }},
    };
    return table;
}

}  // namespace simulator
