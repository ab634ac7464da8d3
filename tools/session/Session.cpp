#include "tools/session/Session.h"

#include <android/log.h>
#include <libxml/xmlerror.h>
#include <platform/Answer.h>
#include <platform/DeviceFiles.h>

#include <algorithm>
#include <memory>

#include "calibration/ConfigXmlParser.h"
#include "calibration/PanelTable.h"
#include "tools/picture/DisplayPipeline.h"
#include "tools/session/Command.h"

namespace simulator {

namespace {

namespace fs = std::filesystem;
namespace implementation = display_control::implementation;
using implementation::ColorManager;
using implementation::ConfigXmlParser;

Timeline* logTarget = nullptr;  // of the session that lives; the log has no place to keep it

void reportXmlMessage(void* /*context*/, xmlErrorPtr error) {
    std::string message = error->message == nullptr ? "" : error->message;
    message.erase(message.find_last_not_of(" \n\r\t") + 1);
    const std::string file = error->file == nullptr ? "" : fs::path(error->file).filename().string();
    logTarget->report({{"event", "xml"}, {"file", file}, {"line", error->line}, {"message", message}});
}

// What the reader makes of the calibration file now, without a word in the log.
std::unique_ptr<ConfigXmlParser> readCalibration() {
    const int32_t priority = __android_log_set_minimum_priority(ANDROID_LOG_SILENT);
    xmlSetStructuredErrorFunc(nullptr, [](void*, xmlErrorPtr) {});
    auto record = std::make_unique<ConfigXmlParser>();
    record->parser();
    xmlSetStructuredErrorFunc(nullptr, reportXmlMessage);
    __android_log_set_minimum_priority(priority);
    return record;
}

Json panelState() {
    const implementation::PanelIdentity panel = implementation::identifyPanel();
    const bool hasRow = implementation::panelCalibFiles.count(panel.name.text) != 0;
    const char* const how = panel.name.status == platform::NodeStatus::OPEN_FAILED   ? "node could not be opened"
                            : panel.name.status == platform::NodeStatus::READ_FAILED ? "node could not be read"
                            : hasRow                                                 ? "known panel"
                                                                                     : "panel not in the table";
    return {{"name", printable(panel.name.text)}, {"identified", how}, {"calibration file", panel.calibFile}};
}

Json calibrationState() {
    const auto record = readCalibration();
    Json complete = Json::array();
    Json missing = Json::array();
    const auto sort = [&](const char* name, bool has) { (has ? complete : missing).push_back(name); };
    sort("CTM_WPC", record->hasCtmWpc);
    sort("CTM_CCM", record->hasCtmCcm);
    sort("Gamma_Calib", record->hasGammaCalib);
    sort("Gamma_Tuning", record->hasGammaTuning);
    sort("UnlimitedCT", record->hasUnlimitedCT);
    sort("EyeCare", record->hasEyeCare);
    sort("WPCParam", record->hasWpcParam);
    return {{"complete blocks", complete}, {"incomplete or missing blocks", missing}};
}

const char* nameOf(implementation::DisplayControlImpl::ScreenMode mode) {
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

Json colorState(const ColorManager& colors) {
    const auto product = colors.composedCtm();
    return {{"unlimited colour temperature level", colors.unlimitedCT},
            {"eye-care level", colors.eyeCareCT},
            {"colour correction", matrixToJson(colors.ccmCtm.data())},
            {"white point", matrixToJson(colors.wpcCtm.data())},
            {"unlimited gains", matrixToJson(colors.unlimitedCtm.data())},
            {"eye care", matrixToJson(colors.eyeCareCtm.data())},
            {"product", matrixToJson(product.data())},
            {"largest output of the product", toJson(ColorManager::maxRgb(product))},
            {"final matrix", matrixToJson(colors.finalCtm().data())},
            {"calibrated white point", matrixToJson(colors.calibWpcCtm.data())},
            {"calibrated colour correction", matrixToJson(colors.calibCcmCtm.data())}};
}

Json composerState(const DisplayState& state) {
    return {{"first matrix", matrixToJson(state.first.elements.data())},
            {"last matrix", matrixToJson(state.last.elements.data())},
            {"de-gamma table", tableToJson(state.deGamma.entries.data())},
            {"gamma table", tableToJson(state.gamma.entries.data())},
            {"exclusive mode", state.exclusive},
            {"tone curve", !state.toneCurve.empty()}};
}

}  // namespace

Session::Session(SessionOptions options, Timeline& events)
    : timeline(events),
      picture(std::move(options.picture)),
      out(std::move(options.out)),
      goOnWaiting(std::move(options.goOnWaiting)),
      simulated(options.phone ? Phone(*options.phone) : Phone(Phone::Start::SAMPLE)) {
    __android_log_set_minimum_priority(ANDROID_LOG_SILENT);
    displayControl.allocUserHandle(0, [this](display_control::Result, uint64_t handle) { userHandle = handle; });
    __android_log_set_minimum_priority(options.logPriority);

    logTarget = &timeline;
    xmlSetStructuredErrorFunc(nullptr, reportXmlMessage);
    simulated.observe([this](const Event& event) { see(event); });
}

void Session::see(const Event& event) {
    if (const auto* const call = std::get_if<ComposerCall>(&event.what)) {
        timeline.report(toEvent(*call));
    } else if (const auto* const write = std::get_if<NodeWrite>(&event.what)) {
        timeline.report({{"event", "node"}, {"path", write->path}, {"bytes", printable(write->bytes)}});
    } else if (const auto* const line = std::get_if<LogLine>(&event.what)) {
        const std::string place = line->line > 0 ? line->function + ":" + std::to_string(line->line) + ": " : "";
        timeline.report({{"event", "log"},
                         {"priority", std::string(1, letterOf(line->priority))},
                         {"tag", line->tag},
                         {"message", place + line->message}});
    } else if (const auto* const sample = std::get_if<LightSample>(&event.what)) {
        timeline.report({{"event", "sample"}, {"mean", sample->mean}, {"lux", sample->lux}});
    }
}

// The phone goes on as it is, unseen, until nothing of it runs any more.
Session::~Session() {
    timeline.close();
    __android_log_set_minimum_priority(ANDROID_LOG_SILENT);
    platform::dropAnswer(displayControl.setAlad(userHandle, 0, 0));
    displayControl.deInit();
    xmlSetStructuredErrorFunc(nullptr, nullptr);
    __android_log_set_minimum_priority(ANDROID_LOG_DEFAULT);
    logTarget = nullptr;
}

void Session::run(std::string_view line, size_t number) {
    const ParsedLine parsed = parseLine(line);
    if (parsed.command == nullptr && parsed.comment.empty()) return;
    Json event = {{"event", "command"}, {"line", number}, {"text", parsed.text}};
    if (!parsed.comment.empty()) event["comment"] = parsed.comment;
    timeline.report(event);
    if (parsed.command == nullptr) return;
    parsed.command->run(*this, parsed.values);
    simulated.clock().settle();  // threads that the line started have come to wait
}

void Session::answer(display_control::Result result, const Json& parts) {
    Json event = {{"event", "answer"}, {"result", resultToJson(static_cast<int32_t>(result))}};
    event.update(parts);
    timeline.report(event);
}

void Session::wait(std::chrono::milliseconds whole) {
    constexpr std::chrono::milliseconds kSlice{1000};
    std::chrono::milliseconds passed{0};
    do {
        const auto slice = std::min(kSlice, whole - passed);
        simulated.clock().advance(slice);
        passed += slice;
        const bool goOn = !goOnWaiting || goOnWaiting(passed, whole);
        if (!goOn && passed < whole) {
            timeline.report({{"event", "answer"}, {"result", "interrupted"}});
            return;
        }
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
    timeline.report({{"event", "picture"},
                     {"file", file.string()},
                     {"display", display},
                     {"pixels", picture.pixels.size() / 3},
                     {"clippedPixels", shown.clippedPixels}});
}

Json Session::displayState(uint64_t display) const {
    Json state = {{"service", colorState(displayControl.displayColors()[display])}};
    const auto held = simulated.composer().stateOf(display);
    state["composer"] = held ? composerState(*held) : Json("not there, or has no such display");
    return state;
}

void Session::noteCalibration() {
    calibration = panelState();
    calibration.update(calibrationState());
}

Json Session::state() const {
    Json state = {{"panel and calibration, as last read", calibration},
                  {"screen mode", nameOf(displayControl.currentScreenMode())}};
    for (uint64_t display = 0; display < displayControl.displayColors().size(); ++display) {
        state["display " + std::to_string(display)] = displayState(display);
    }
    if (displayControl.displayColors().empty()) state["displays"] = "none known";
    return state;
}

}  // namespace simulator
