// SPDX-License-Identifier: Apache-2.0
#include "tools/session/Session.h"

#include <android/log.h>
#include <platform/Answer.h>
#include <platform/DeviceFiles.h>

#include <algorithm>
#include <memory>

#include "calibration/ConfigXmlParser.h"
#include "calibration/PanelTable.h"
#include "tools/picture/DisplayPipeline.h"
#include "tools/session/Command.h"
#include "tools/session/DataFolder.h"
#include "tools/text/Text.h"

namespace simulator {

namespace {

namespace fs = std::filesystem;
namespace implementation = display_control::implementation;
using implementation::ColorManager;
using implementation::ConfigXmlParser;

// What the reader makes of the calibration file now, without a log line.
std::unique_ptr<ConfigXmlParser> readSilently() {
    const int32_t priority = __android_log_set_minimum_priority(ANDROID_LOG_SILENT);
    const XmlMessageHandler silence([](const XmlMessage&) {});
    auto record = implementation::readCalibration();
    __android_log_set_minimum_priority(priority);
    return record;
}

State panelState() {
    const implementation::PanelIdentity panel = implementation::identifyPanel();
    const bool hasRow = implementation::panelCalibFiles.count(panel.name.text) != 0;
    const std::string how = panel.name.status == platform::NodeStatus::OPEN_FAILED   ? "node could not be opened"
                            : panel.name.status == platform::NodeStatus::READ_FAILED ? "node could not be read"
                            : hasRow                                                 ? "known panel"
                                                                                     : "panel not in the table";
    return {{"name", printable(panel.name.text)}, {"identified", how}, {"calibration file", panel.calibFile}};
}

State calibrationState() {
    const auto record = readSilently();
    std::vector<std::string> complete;
    std::vector<std::string> missing;
    for (const implementation::CalibrationBlock& block : implementation::kCalibrationBlocks)
        ((*record).*block.isComplete ? complete : missing).emplace_back(block.name);
    return {{"complete blocks", complete}, {"incomplete or missing blocks", missing}};
}

std::string nameOf(implementation::DisplayControlImpl::ScreenMode mode) {
    using Service = implementation::DisplayControlImpl;
    switch (mode) {
        case Service::SMART_ENVIRONMENT:
            return "smart environment";
        case Service::ENHANCED:
            return "enhanced";
        case Service::STANDARD:
            return "standard";
        case Service::NONE:
            break;
    }
    return "none yet";
}

Value matrixValue(const implementation::TMat33<float>& matrix) {
    return matrixOf(matrix.data());
}

State colorState(const ColorManager& colors) {
    const auto product = colors.composedCtm();
    return {{"unlimited colour temperature level", int64_t{colors.unlimitedCT}},
            {"eye-care level", int64_t{colors.eyeCareCT}},
            {"colour correction", matrixValue(colors.ccmCtm)},
            {"white point", matrixValue(colors.wpcCtm)},
            {"unlimited gains", matrixValue(colors.unlimitedCtm)},
            {"eye care", matrixValue(colors.eyeCareCtm)},
            {"product", matrixValue(product)},
            {"largest output of the product", ColorManager::maxRgb(product)},
            {"final matrix", matrixValue(colors.finalCtm())},
            {"calibrated white point", matrixValue(colors.calibWpcCtm)},
            {"calibrated colour correction", matrixValue(colors.calibCcmCtm)}};
}

State composerState(const DisplayState& state) {
    return {{"first matrix", matrixOf(state.first.elements.data())},
            {"last matrix", matrixOf(state.last.elements.data())},
            {"de-gamma table", tableOf(state.deGamma.entries.data())},
            {"gamma table", tableOf(state.gamma.entries.data())},
            {"exclusive mode", state.exclusive},
            {"tone curve", !state.toneCurve.empty()}};
}

}  // namespace

Session::Session(SessionOptions options, Timeline& events)
    : timeline(events),
      picture(std::move(options.picture)),
      out(std::move(options.out)),
      goOnWaiting(std::move(options.goOnWaiting)),
      simulated(options.phone ? Phone(*options.phone) : Phone(Phone::Start::SAMPLE, dataFolder() / "phone")) {
    service().allocUserHandle(0, [this](display_control::Result, uint64_t handle) { userHandle = handle; });
    __android_log_set_minimum_priority(options.logPriority);
    simulated.observe([this](const Event& event) { timeline.report({event.time, event.what}); });
}

// The service is stopped without being observed.
Session::~Session() {
    simulated.observe({});
    __android_log_set_minimum_priority(ANDROID_LOG_SILENT);
    platform::dropAnswer(service().setAlad(userHandle, 0, 0));
    library().deInit();
    __android_log_set_minimum_priority(ANDROID_LOG_DEFAULT);
}

void Session::report(SessionEvent::What event) {
    timeline.report({simulated.clock().now(), std::move(event)});
}

void Session::run(std::string_view line, size_t number) {
    const ParsedLine parsed = parseLine(line);
    if (parsed.command == nullptr && parsed.comment.empty()) return;
    report(ScriptLine{number, std::string(parsed.text), std::string(parsed.comment)});
    if (parsed.command == nullptr) return;
    operation = parsed.command->name;
    parsed.command->run(*this, parsed.values);
    simulated.clock().settle();
    report(LineDone{});
}

void Session::answer(Value result, Values values) {
    simulated.clock().settle();  // what threads that have just started do precedes the answer
    simulated.report(Answer{operation, std::move(result), std::move(values)});
}

void Session::answer(display_control::Result result, Values values) {
    answer(composerResultName(static_cast<int32_t>(result)), std::move(values));
}

void Session::wait(std::chrono::milliseconds whole) {
    constexpr std::chrono::milliseconds kSlice{1000};
    std::chrono::milliseconds passed{0};
    do {
        const auto slice = std::min(kSlice, whole - passed);
        simulated.clock().advance(slice);
        passed += slice;
        const bool goOn = !goOnWaiting || goOnWaiting(passed, whole);
        if (!goOn && passed < whole) return answer(std::string("interrupted"));
    } while (passed < whole);
}

void Session::writePicture(const std::string& name, uint64_t display) {
    const auto state = simulated.composer().stateOf(display);
    if (!state)
        throw ScriptError("the composer has no display " + std::to_string(display) + " now; expected one it has");
    if (out.empty()) return;
    const ShownPicture shown = showPicture(picture, *state);
    std::error_code error;
    fs::create_directories(out, error);
    if (error) throw ScriptError(out.string() + ": " + error.message() + "; expected a folder that can be written");
    const fs::path file = out / (name + ".png");
    savePng(shown.picture, file);
    report(WrittenPicture{file.string(), display, picture.pixels.size() / 3, shown.clippedPixels});
}

State Session::displayState(uint64_t display) const {
    const StateEntry service = {"service", false, colorState(served.library().displayColors()[display])};
    const auto held = simulated.composer().stateOf(display);
    if (held) return {service, {"composer", false, composerState(*held)}};
    return {service, {"composer", "stopped, or has no such display"}};
}

void Session::noteCalibration() {
    calibration = panelState();
    const State blocks = calibrationState();
    calibration.insert(calibration.end(), blocks.begin(), blocks.end());
}

State Session::state() const {
    State state = {{"panel and calibration, as last read", "not read yet", calibration},
                   {"screen mode", nameOf(served.library().currentScreenMode())}};
    for (uint64_t display = 0; display < served.library().displayColors().size(); ++display) {
        state.push_back({"display " + std::to_string(display), false, displayState(display)});
    }
    if (served.library().displayColors().empty()) state.push_back({"displays", "none known"});
    return state;
}

}  // namespace simulator
