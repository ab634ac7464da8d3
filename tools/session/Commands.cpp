// SPDX-License-Identifier: Apache-2.0
// The table of commands.
#include <algorithm>
#include <array>
#include <charconv>
#include <fstream>
#include <iomanip>

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
    return {"value", Argument::Kind::INTEGER, 1, /*optional=*/true};
}

Argument unsigned32() {
    return {"value", Argument::Kind::UNSIGNED, 1, /*optional=*/false, UINT32_MAX};
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
    GammaLut table;
    std::ifstream stream(file);
    if (!stream) throw ScriptError(file + ": could not be opened; expected a file of 4096 numbers");
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

// The words of fail: a call, and how it fails.
constexpr std::array<std::pair<std::string_view, SensorOperation>, 4> kSensorSteps = {
    {{"find", SensorOperation::GET_DEFAULT_SENSOR},
     {"queue", SensorOperation::CREATE_EVENT_QUEUE},
     {"enable", SensorOperation::ENABLE_SENSOR},
     {"disable", SensorOperation::DISABLE_SENSOR}}};
constexpr std::array<std::pair<std::string_view, Failure>, 4> kFailures = {{{"refused", Failure::REFUSED},
                                                                            {"no-callback", Failure::NO_CALLBACK},
                                                                            {"unreached", Failure::TRANSPORT_BEFORE},
                                                                            {"answer-lost", Failure::TRANSPORT_AFTER}}};

template <typename Rows>
std::vector<std::string_view> wordsOf(const Rows& rows) {
    std::vector<std::string_view> words;
    for (const auto& row : rows) words.push_back(row.first);
    return words;
}

template <typename Rows>
const auto* rowOf(const Rows& rows, std::string_view word) {
    const auto* const row =
        std::find_if(rows.begin(), rows.end(), [word](const auto& candidate) { return candidate.first == word; });
    return row == rows.end() ? nullptr : row;
}

Failure failureFrom(const Values& values, size_t index) {
    return values.size() > index ? rowOf(kFailures, values.text(index))->second : Failure::REFUSED;
}

// A call goes with fail, and with fail alone.
void checkFail(const Values& values, const std::string& command, const std::string& call) {
    if ((values.text(0) == "fail") == (values.size() > 1)) return;
    throw ScriptError(command + ": a call goes with fail, and with fail alone; expected " + command + " stop, " +
                      command + " start or " + command + " fail " + call);
}

// stop: events stop; start: everything works again; fail: the service is not found, or a step fails, and events stay
// as they were.
void switchSensor(Session& session, const Values& values) {
    checkFail(values, "sensor", "STEP");
    Phone& phone = session.phone();
    const std::string step = values.size() > 1 ? values.text(1) : "";
    phone.setSensorsPresent(step != "service");
    phone.sensors().recover();
    if (const auto* const row = rowOf(kSensorSteps, step)) phone.sensors().fail(row->second, failureFrom(values, 2));
    if (values.text(0) != "fail") phone.sensors().setDelivering(values.text(0) == "start");
}

// stop: the process ends; start: everything works again; fail: a call fails, besides those that fail already.
void switchComposer(Session& session, const Values& values) {
    checkFail(values, "composer", "CALL");
    Phone& phone = session.phone();
    if (values.text(0) == "stop") return phone.stopComposer();
    if (values.text(0) == "start") {
        phone.composer().recover();
        return phone.startComposer();
    }
    const auto* const call = std::find(kComposerOperations.begin(), kComposerOperations.end(), values.text(1));
    phone.composer().fail(static_cast<ComposerOperation>(call - kComposerOperations.begin()), failureFrom(values, 2));
}

void setDisplays(Session& session, const Values& values) {
    session.phone().composer().setDisplayCount(static_cast<uint32_t>(values.number(0)));
}

void setPanel(Session& session, const Values& values) {
    session.phone().files().write(kPanelNameNode, values.text(0) + "\n");
}

void setCalibration(Session& session, const Values& values) {
    const std::string path = session.phone().files().installCalibration(values.text(0));
    session.report(InstalledFile{path, values.text(0)});
}

void setWhitePoint(Session& session, const Values& values) {
    session.phone().files().write(
        kWhitePointNode, "x=" + std::to_string(values.integer(0)) + ",y=" + std::to_string(values.integer(1)) + "\n");
}

void removeFile(Session& session, const Values& values) {
    PhoneFiles& files = session.phone().files();
    files.remove(values.text(0) == "calibration" ? files.calibrationPath() : std::string(nodePath(values.text(0))));
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
        {"freeUserHandle", {}, "give the user handle back", freeUserHandle},
        {"getNumOfDisplay", {}, "how many displays the service knows", getNumOfDisplay},
        {"getDisplayInfo", {display()}, "what the service knows of a display", getDisplayInfo},
        {"setColorTransformMatrix",
         {display(), matrix("element")},
         "set the last matrix, by rows",
         setColorTransformMatrix,
         "matrices and tables"},
        {"getColorTransformMatrix", {display()}, "the composer's first matrix", getColorTransformMatrix},
        {"setColorTransformMatrix2",
         {display(), matrix("first"), matrix("last")},
         "set both matrices, by rows",
         setColorTransformMatrix2},
        {"getColorTransformMatrix2", {display()}, "both of the composer's matrices", getColorTransformMatrix2},
        {"setGlobalGammaLut",
         {display(), {"file", Kind::FILE}},
         "set the gamma table to a file's 4096 numbers",
         setTable<&Service::setGlobalGammaLut>},
        {"getGlobalGammaLut", {display()}, "the composer's gamma table", getTable<&Service::getGlobalGammaLut>},
        {"setGlobalDeGammaLut",
         {display(), {"file", Kind::FILE}},
         "set the de-gamma table to a file's 4096 numbers",
         setTable<&Service::setGlobalDeGammaLut>},
        {"getGlobalDeGammaLut", {display()}, "the composer's de-gamma table", getTable<&Service::getGlobalDeGammaLut>},
        {"setGlobalGamma",
         {display(), {"exponent", Kind::FLOAT}},
         "set the gamma table to a power law",
         setGlobalGamma},
        {"setUnlimitedCT",
         {display(), integer("level")},
         "colour temperature: -100 warm, 0 neutral, 100 cold",
         setInteger<&Service::setUnlimitedCT>,
         "colour temperature and screen modes"},
        {"getUnlimitedCT", {display()}, "the level last set", getLevel<&Service::getUnlimitedCT>},
        {"setEyeCareCT",
         {display(), integer("level")},
         "eye care: 0 none to 100 warmest",
         setInteger<&Service::setEyeCareCT>},
        {"getEyeCareCT", {display()}, "the level last set", getLevel<&Service::getEyeCareCT>},
        {"setStandardMode",
         {display(), ignored()},
         "the panel's calibrated colour",
         setInteger<&Service::setStandardMode>},
        {"setEnhanceScreenMode",
         {display(), ignored()},
         "the panel's native colour",
         setInteger<&Service::setEnhanceScreenMode>},
        {"setSmartEnvironmentMode",
         {display(), ignored()},
         "the measured white point, calibrated",
         setInteger<&Service::setSmartEnvironmentMode>},
        {"setCabcMode",
         {display(), integer("mode")},
         "backlight control 0 to 4, in smart environment mode",
         setInteger<&Service::setCabcMode>},
        {"setCabcSysNode",
         {display(), integer("level")},
         "write a level to the backlight control node",
         setInteger<&Service::setCabcSysNode>},

        {"setAlad",
         {display(), unsigned32()},
         "ambient-light adaptive display: 0 off, otherwise on",
         setAlad,
         "ambient light, exclusive mode and features"},
        {"IsAladEnable", {display()}, "1 while it is on", isAladEnable},
        {"exclusiveModeEnter", {unsigned32()}, "take display 0 without any adjustment", enterExclusive},
        {"exclusiveModeExit", {unsigned32()}, "give it back, calibrated", leaveExclusive},
        {"setFeature",
         {display(), integer("feature"), integer("value"), integer("value2")},
         "0, 1, 2: modes; 3: eye care; 7: backlight; 23: unlimited",
         setFeature},
        {"setMiscFeature",
         {display(), integer("feature"), {"value", Kind::DOUBLE, kMostValues, true}},
         "the same with a list of values",
         setMiscFeature},
        {"getMiscFeature", {display(), integer("feature")}, "no feature can be read", getMiscFeature},

        {"wait", {{"duration", Kind::DURATION}}, "let time pass", wait, "time and light"},
        {"light", {{"lux", Kind::FLOAT}}, "the light that falls on the phone", setLight},
        {"sensor",
         {{"state", Kind::WORD, 1, false, 0, {"stop", "start", "fail"}},
          {"step", Kind::WORD, 1, true, 0, {"service", "find", "queue", "enable", "disable"}},
          {"how", Kind::WORD, 1, true, 0, wordsOf(kFailures)}},
         "stop events, let a step fail, or work again",
         switchSensor},
        {"displays",
         {{"count", Kind::UNSIGNED, 1, false, kMostDisplays}},
         "how many displays the composer has",
         setDisplays,
         "the phone around the service"},
        {"panel", {{"name", Kind::TEXT}}, "the name that the panel's driver reports", setPanel},
        {"calibration", {{"file", Kind::FILE}}, "put a file in the place of the panel's calibration", setCalibration},
        {"whitepoint",
         {integer("x"), integer("y")},
         "the white that the driver reports, CIE xy in thousandths",
         setWhitePoint},
        {"remove",
         {{"file", Kind::WORD, 1, false, 0, {"panel", "cabc", "whitepoint", "calibration"}}},
         "remove a node, or the panel's calibration file",
         removeFile},
        {"composer",
         {{"state", Kind::WORD, 1, false, 0, {"stop", "start", "fail"}},
          {"call", Kind::WORD, 1, true, 0, {kComposerOperations.begin(), kComposerOperations.end()}},
          {"how", Kind::WORD, 1, true, 0, wordsOf(kFailures)}},
         "end its process, let a call fail, or work again",
         switchComposer},
        {"picture",
         {{"name", Kind::NAME}, {"display", Kind::DISPLAY, 1, true}},
         "write the picture as the display shows it now",
         writePicture,
         "output"},
        {"show",
         {},
         "the state of the service and of everything it uses",
         [](Session& session, const Values&) { session.show(); }},
    };
    return table;
}

}  // namespace simulator
