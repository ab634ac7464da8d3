// SPDX-License-Identifier: Apache-2.0
#include "tools/accuracy/ServiceStates.h"

#include <iostream>
#include <stdexcept>

#include "tools/text/Text.h"

namespace simulator {

namespace {

struct Control {
    const char* operation;
    int first;
    int last;
};
constexpr Control kControls[] = {{"setUnlimitedCT", -100, 100}, {"setEyeCareCT", 0, 100}};
constexpr int kLevelStep = 5;

void startStandardMode(Session& session) {
    session.run("init", 1);
    session.run("setStandardMode 0", 2);
}

DisplayState stateOf(Session& session) {
    auto state = session.phone().composer().stateOf(0);
    if (!state)
        throw std::runtime_error("the composer has no display 0 after the script; expected a composer that runs");
    return *std::move(state);
}

SessionOptions unseen(const std::filesystem::path& phone) {
    SessionOptions options;
    options.phone = phone;
    options.logPriority = ANDROID_LOG_SILENT;
    return options;
}

// The states without those of the controls.
ServiceStates afterScript(const ServiceRun& run, const std::filesystem::path& phone) {
    ServiceStates states;
    SessionOptions options = unseen(phone);
    options.inPlace = true;
    Timeline calls([&states](const SessionEvent& event) {
        const auto* const call = phoneEvent<ComposerCall>(event);
        if (call == nullptr) return;
        const Outcome& outcome = call->outcome;
        if (outcome.kind != Outcome::Kind::ANSWERED || outcome.result != 0) ++states.failedCalls;
    });
    Session session(std::move(options), calls);
    if (run.calibration) session.phone().files().installCalibration(*run.calibration);
    if (run.script != nullptr) {
        run.script->run(session, std::cout);
    } else {
        startStandardMode(session);
    }
    states.end = stateOf(session);
    states.calibration = run.calibration ? run.calibration->string() : session.phone().files().calibrationPath();
    return states;
}

ControlStates statesOver(const Control& control, const std::filesystem::path& phone) {
    Timeline silence([](const SessionEvent&) {});
    Session session(unseen(phone), silence);
    startStandardMode(session);
    ControlStates states{control.operation, stateOf(session), {}};
    for (int level = control.first; level <= control.last; level += kLevelStep) {
        session.run(states.operation + " 0 " + std::to_string(level), 1);
        states.levels.emplace_back(level, stateOf(session));
    }
    return states;
}

}  // namespace

ServiceStates statesOf(const ServiceRun& run) {
    if (run.calibration) requireFile(*run.calibration, "a calibration file");
    const PhoneFiles files = PhoneFiles::copyOf(run.phone);
    ServiceStates states = afterScript(run, files.root());
    for (const Control& control : kControls) states.controls.push_back(statesOver(control, files.root()));
    return states;
}

}  // namespace simulator
