// SPDX-License-Identifier: Apache-2.0
#include "tests/model/Comparison.h"

#include <libxml/xmlerror.h>

#include <algorithm>
#include <cstring>

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

std::vector<Display> stateOf(const Implementation& service) {
    std::vector<Display> state;
    state.reserve(service.displayColors().size());
    const auto copy = [](const auto& m) { return simulator::matrixOf(m.data()); };
    for (const auto& c : service.displayColors())
        state.push_back({copy(c.wpcCtm), copy(c.ccmCtm), copy(c.unlimitedCtm), copy(c.eyeCareCtm), c.unlimitedCT,
                         c.eyeCareCT, copy(c.calibWpcCtm), copy(c.calibCcmCtm)});
    return state;
}

std::string textOf(const Display& d) {
    std::string line = std::to_string(d.unlimitedLevel) + " " + std::to_string(d.eyeCareLevel);
    for (const auto& matrix :
         {d.whitePoint, d.colorCorrection, d.unlimited, d.eyeCare, d.calibWhitePoint, d.calibColorCorrection})
        line += " " + simulator::valueText(matrix);
    return line;
}

template <typename Record>
Lines textOf(const std::vector<Record>& records) {
    Lines lines;
    for (const Record& record : records) lines.push_back(textOf(record));
    return lines;
}

bool hasSameBits(const Display& a, const Display& b) {
    return memcmp(&a, &b, sizeof a) == 0;
}

// Records of equal bits have equal texts, which take long; NaNs of different bits have them too.
template <typename Record>
std::string difference(const std::string& what, const std::vector<Record>& given, const std::vector<Record>& expected) {
    const auto isSame = [](const Record& a, const Record& b) { return hasSameBits(a, b); };
    if (std::equal(given.begin(), given.end(), expected.begin(), expected.end(), isSame)) return "";
    return difference(what, textOf(given), textOf(expected));
}

}  // namespace

Comparison::Comparison(const Settings& settings) {
    apply(current, phone);
    phone.observe([this](const simulator::Event& event) {
        happened.push_back(event.what);
        if (observer) observer(event);
    });
    begin(settings);
}

Comparison::~Comparison() {
    end();
}

void Comparison::begin(const Settings& settings) {
    end();
    become(settings, current.composerLife + 1);
    service = std::make_unique<Implementation>();
    uint64_t lastHandle = 0;
    service->allocUserHandle(0, [&lastHandle](auto, uint64_t handle) { lastHandle = handle; }).isOk();
    modelled = std::make_unique<Service>(current, phone, lastHandle);
    happened.clear();
}

void Comparison::set(const Settings& next) {
    become(next, next.composerLife);
}

void Comparison::become(const Settings& next, int composerLife) {
    if (composerLife != current.composerLife) {
        phone.stopComposer();
        phone.startComposer();
    }
    apply(next, current, phone);
    current = next;
    current.composerLife = composerLife;
}

Lines Comparison::events() const {
    return textOf(latestEvents);
}

std::string Comparison::call(const Call& call) {
    xmlSetStructuredErrorFunc(nullptr, [](void*, xmlErrorPtr) {});  // libxml2 forgets it after each file
    latestAnswer = answerOf(*service, call);
    phone.clock().settle();
    const std::string text = compare(modelled->call(call));
    return text.empty() ? "" : textOf(call) + ": " + text;
}

std::string Comparison::light(float lux) {
    phone.sensors().deliver(lux);
    modelled->light(lux);
    return "";
}

std::string Comparison::pass(std::chrono::milliseconds duration) {
    phone.clock().advance(duration);
    modelled->pass(duration.count());
    return compare(latestAnswer);
}

std::string Comparison::end() {
    if (service == nullptr) return "";
    std::string text = call({"setAlad"});
    text += pass(5s);
    if (phone.clock().hasThreads()) text += "a thread is left";
    service.reset();
    modelled.reset();
    return latestEvents.empty() ? text : text + "still running: " + events()[0];
}

std::string Comparison::compare(const std::string& expectedAnswer) {
    std::swap(latestEvents, happened);
    happened.clear();
    std::string text;
    if (latestAnswer != expectedAnswer) text += difference("answer", {latestAnswer}, {expectedAnswer});
    text += difference("events", latestEvents, modelled->takeEvents());
    const auto mode = service->currentScreenMode();
    if (mode != modelled->currentScreenMode()) text += "mode " + std::to_string(mode) + "\n";
    return text + difference("displays", stateOf(*service), modelled->displayColors());
}

}  // namespace model
