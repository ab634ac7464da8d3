// SPDX-License-Identifier: Apache-2.0
#include "tests/model/Comparison.h"

#include <libxml/xmlerror.h>

#include <algorithm>
#include <utility>

namespace model {

namespace {

using namespace std::chrono_literals;

// The matrices and levels of a display, in the order of ColorManager.
template <typename... Matrices>
std::string textOf(int32_t unlimitedLevel, int32_t eyeCareLevel, const Matrices&... matrices) {
    std::string text = std::to_string(unlimitedLevel) + " " + std::to_string(eyeCareLevel);
    ((text += " " + simulator::valueText(simulator::matrixOf(matrices.data()))), ...);
    return text;
}

// The lines of one list from the first that differs on.
std::string difference(const char* head, const Lines& lines, const Lines& others) {
    const auto first = std::mismatch(lines.begin(), lines.end(), others.begin(), others.end()).first;
    std::string text = head;
    for (auto line = first; line != lines.end(); ++line) text += "\n    " + *line;
    return text + "\n";
}

}  // namespace

Comparison::Comparison() {
    apply(current, phone);
    phone.observe([this](const simulator::Event& event) { happened.push_back(simulator::textOf(event)); });
    begin(current);
}

Comparison::~Comparison() {
    end();
}

void Comparison::begin(const Settings& settings) {
    if (service != nullptr) end();
    Settings first = settings;
    first.composerLife = current.composerLife + 1;
    apply(first, std::exchange(current, first), phone);
    service = std::make_unique<Implementation>();
    uint64_t lastHandle = 0;
    service->allocUserHandle(0, [&lastHandle](auto, uint64_t handle) { lastHandle = handle; }).isOk();
    modelled = std::make_unique<Service>(current, lastHandle);
    happened.clear();
    pass(0ms);
}

void Comparison::set(const Settings& next) {
    apply(next, std::exchange(current, next), phone);
    modelled->phoneChanged();
}

std::string Comparison::call(const Call& call) {
    xmlSetStructuredErrorFunc(nullptr, [](void*, xmlErrorPtr) {});  // libxml2 forgets it after each file
    latestAnswer = answerOf(*service, call);
    phone.clock().settle();
    return compare(model::textOf(call), latestAnswer, modelled->call(call));
}

std::string Comparison::light(float lux) {
    phone.sensors().deliver(lux);
    modelled->light(lux);
    return compare("light");
}

std::string Comparison::pass(std::chrono::milliseconds duration) {
    phone.clock().advance(duration);
    modelled->pass(duration.count());
    return compare("time");
}

std::string Comparison::end() {
    std::string difference = call({"setAlad"});
    difference += pass(5s);
    return latestEvents.empty() ? difference : difference + "something still runs: " + latestEvents[0];
}

std::string Comparison::compare(const std::string& step, const std::string& given, const std::string& expected) {
    latestEvents = std::exchange(happened, {});
    const Lines expectedEvents = modelled->takeEvents();
    std::string text;
    if (given != expected) text += "answered " + given + "\nexpected " + expected + "\n";
    if (latestEvents != expectedEvents)
        text +=
            difference("happened", latestEvents, expectedEvents) + difference("expected", expectedEvents, latestEvents);
    if (service->currentScreenMode() != modelled->currentScreenMode()) text += "another screen mode\n";
    const Lines colors = colorsOfService();
    const Lines expectedColors = colorsOfModel();
    if (colors != expectedColors)
        text += difference("colours", colors, expectedColors) + difference("expected", expectedColors, colors);
    return text.empty() ? "" : step + ": " + text;
}

Lines Comparison::colorsOfService() const {
    Lines lines;
    for (const auto& c : service->displayColors())
        lines.push_back(textOf(c.unlimitedCT, c.eyeCareCT, c.wpcCtm, c.ccmCtm, c.unlimitedCtm, c.eyeCareCtm,
                               c.calibWpcCtm, c.calibCcmCtm));
    return lines;
}

Lines Comparison::colorsOfModel() const {
    Lines lines;
    for (const Display& d : modelled->displayColors())
        lines.push_back(textOf(d.unlimitedLevel, d.eyeCareLevel, d.whitePoint, d.colorCorrection, d.unlimited,
                               d.eyeCare, d.calibWhitePoint, d.calibColorCorrection));
    return lines;
}

}  // namespace model
