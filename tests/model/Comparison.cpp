// SPDX-License-Identifier: Apache-2.0
#include "tests/model/Comparison.h"

#include <libxml/xmlerror.h>

#include <algorithm>

namespace model {

namespace {

using namespace std::chrono_literals;
using Implementation = ::vendor::kov::hardware::display_control::V1_0::implementation::DisplayControlImpl;

// Empty if the lists are equal; otherwise each from the first line that differs.
std::string difference(const std::string& what, const Lines& given, const Lines& expected) {
    const auto [line, other] = std::mismatch(given.begin(), given.end(), expected.begin(), expected.end());
    if (line == given.end() && other == expected.end()) return "";
    std::string text = what;
    std::for_each(line, given.end(), [&text](const std::string& each) { text += "\n    " + each; });
    text += "\n  expected";
    std::for_each(other, expected.end(), [&text](const std::string& each) { text += "\n    " + each; });
    return text + "\n";
}

std::string stateOf(int32_t unlimitedLevel, int32_t eyeCareLevel, std::initializer_list<const float*> matrices) {
    std::string text = "levels " + std::to_string(unlimitedLevel) + " " + std::to_string(eyeCareLevel);
    for (const float* const matrix : matrices) text += " " + simulator::valueText(simulator::matrixOf(matrix));
    return text;
}

Lines stateOf(const Implementation& service) {
    Lines state = {"mode " + std::to_string(service.currentScreenMode())};
    for (const auto& c : service.displayColors())
        state.push_back(stateOf(c.unlimitedCT, c.eyeCareCT,
                                {c.wpcCtm.data(), c.ccmCtm.data(), c.unlimitedCtm.data(), c.eyeCareCtm.data(),
                                 c.calibWpcCtm.data(), c.calibCcmCtm.data()}));
    return state;
}

Lines stateOf(const Service& service) {
    Lines state = {"mode " + std::to_string(service.currentScreenMode())};
    for (const Display& d : service.displayColors())
        state.push_back(stateOf(d.unlimitedLevel, d.eyeCareLevel,
                                {d.whitePoint.data(), d.colorCorrection.data(), d.unlimited.data(), d.eyeCare.data(),
                                 d.calibWhitePoint.data(), d.calibColorCorrection.data()}));
    return state;
}

}  // namespace

Comparison::Comparison() {
    apply(current, phone);
    phone.observe([this](const simulator::Event& event) {
        happened.push_back(textOf(event));
        if (observer) observer(event);
    });
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
    modelled = std::make_unique<Service>(current, phone, lastHandle);
    happened.clear();
}

void Comparison::set(const Settings& next) {
    apply(next, std::exchange(current, next), phone);
}

std::string Comparison::call(const Call& call) {
    xmlSetStructuredErrorFunc(nullptr, [](void*, xmlErrorPtr) {});  // libxml2 forgets it after each file
    latestAnswer = answerOf(*service, call);
    phone.clock().settle();
    return compare(textOf(call), modelled->call(call));
}

std::string Comparison::light(float lux) {
    phone.sensors().deliver(lux);
    modelled->light(lux);
    return "";
}

std::string Comparison::pass(std::chrono::milliseconds duration) {
    phone.clock().advance(duration);
    modelled->pass(duration.count());
    return compare("time", latestAnswer);
}

std::string Comparison::end() {
    std::string text = call({"setAlad"});
    text += pass(5s);
    return latestEvents.empty() ? text : text + "still running: " + latestEvents[0];
}

std::string Comparison::compare(const std::string& step, const std::string& expectedAnswer) {
    latestEvents = std::exchange(happened, {});
    const std::string text = difference("answer", {latestAnswer}, {expectedAnswer}) +
                             difference("events", latestEvents, modelled->takeEvents()) +
                             difference("state", stateOf(*service), stateOf(*modelled));
    return text.empty() ? "" : step + ": " + text;
}

}  // namespace model
