// SPDX-License-Identifier: Apache-2.0
// The service against the model: every operation from every state, with every fault of the phone.
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <functional>
#include <iterator>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "tests/model/Comparison.h"

namespace model {

namespace {

using namespace std::chrono_literals;
using namespace std::string_literals;
using Step = std::function<std::string(Comparison&)>;
using Change = std::function<void(Settings&)>;

Step call(const std::string& operation, uint64_t display = 0, int32_t number = 0, int32_t value = 0) {
    return [=](Comparison& c) { return c.call({operation, display, number, value}); };
}
Step light(float lux) {
    return [=](Comparison& c) { return c.light(lux); };
}
Step pass(std::chrono::milliseconds duration) {
    return [=](Comparison& c) { return c.pass(duration); };
}
Step set(const Change& change) {
    return [=](Comparison& c) {
        Settings next = c.settings();
        change(next);
        c.set(next);
        return ""s;
    };
}

testing::AssertionResult holds(Comparison& c, const std::vector<Step>& steps) {
    for (const Step& step : steps) {
        const std::string difference = step(c);
        if (!difference.empty()) return testing::AssertionFailure() << difference;
    }
    return testing::AssertionSuccess();
}

// --- States ---

struct State {
    const char* name;
    std::vector<Step> steps;
    std::vector<std::string> operations = {};  // that it matters to; empty: all
};

std::vector<State> states() {
    const auto displays = [](uint32_t count) { return set([=](Settings& s) { s.displays = count; }); };
    const auto refuseCount = [](Failure f) {
        return set([=](Settings& s) { s.composerFailures[ComposerOperation::GET_NUM_OF_DISPLAY] = f; });
    };
    const auto composer = [](bool isPresent) { return set([=](Settings& s) { s.composer = isPresent; }); };
    const Step restart = set([](Settings& s) { ++s.composerLife; });
    const Step shorten = set([](Settings& s) { s.calibrations[0] = {Kind::FILE, true, {1, 2}}; });
    const Step init = call("init");
    const Step on = call("setAlad", 0, 1);
    const Step level = call("setUnlimitedCT", 1, 5);
    std::vector<State> all = {
        {"new", {}},
        {"no display", {displays(0), init}},
        {"one display", {displays(1), init}},
        {"two displays", {init}},
        {"stopped", {init, level, call("deInit")}},
        {"count refused", {init, refuseCount(Failure::REFUSED), init, refuseCount(Failure::NONE)}},
        {"composer not found", {init, composer(false), init, composer(true)}},
        {"composer restarted", {init, level, restart}},
        {"a display more", {init, level, displays(3), init}},
        {"a display fewer", {init, level, displays(1), init}},
        {"started again without the matrices", {init, shorten, init}},
        {"exclusive mode left without them", {init, shorten, call("exclusiveModeExit")}},
        {"standard mode", {init, level, call("setStandardMode")}},
        {"enhanced mode", {init, call("setEyeCareCT", 0, 5), call("setEnhanceScreenMode")}},
        {"smart environment mode", {init, level, call("setStandardMode"), call("setSmartEnvironmentMode")}},
        {"exclusive", {init, call("setStandardMode"), call("exclusiveModeEnter", 0, 1)}},
        {"stopped, ALAD on", {init, on, light(9000), pass(1010ms), call("deInit")}},
    };
    // Milliseconds in the phases of the tone curve: waiting, start message, ramp and its end; the same to another
    // level; the same down to the off message.
    for (const int at : {0, 999, 1000, 1019, 1020, 1050, 1060, 3060, 3090, 3140, 5140, 5250, 5270, 5290, 5300, 7000}) {
        const auto goTo = [at](int from, int to) { return pass(1ms * (std::clamp(at, from, to) - from)); };
        all.push_back(
            {"ALAD on",
             {init, on, light(9000), goTo(0, 1100), light(30000), goTo(1100, 3200), light(100), goTo(3200, 9999)},
             {"setAlad", "exclusiveModeEnter"}});
        if (at == 1050) all.back().operations.clear();
    }
    return all;
}

// --- Calls ---

std::vector<Call> calls() {
    const std::vector<uint64_t> kDisplays = {0, 1, 2, 1ULL << 32};
    const std::vector<int32_t> kModes = {0, 1, 2, 3, 4, 5, -1, INT32_MAX};
    std::vector<Call> all;
    const auto add = [&](const char* operation, const std::vector<uint64_t>& displays,
                         const std::vector<int32_t>& numbers) {
        for (const uint64_t display : displays) {
            for (const int32_t number : numbers) all.push_back({operation, display, number});
        }
    };
    for (const char* const operation : {"allocUserHandle", "freeUserHandle", "getNumOfDisplay"})
        add(operation, {0}, {-1});
    for (const char* const operation :
         {"getDisplayInfo", "setUnlimitedCT", "getUnlimitedCT", "setEyeCareCT", "getEyeCareCT"})
        add(operation, kDisplays, {INT32_MIN});
    for (const char* const operation : {"setStandardMode", "setEnhanceScreenMode", "setSmartEnvironmentMode"}) {
        add("setCabcMode", {9}, kModes);
        add(operation, kDisplays, {99});
    }
    add("setCabcMode", {9}, kModes);
    add("setCabcSysNode", {9}, {0, 9, 12, -49, 208, INT32_MAX});
    for (int32_t feature = -1; feature <= 24; ++feature) all.push_back({"setFeature", 0, feature, 3, -9});
    for (const int32_t feature : {0, 1, 2, 3, 7, 23}) all.push_back({"setFeature", 2, feature, 9});
    const std::vector<std::vector<double>> kValues = {
        {}, {1}, {1, 2, 3}, {2.9, -1.9}, {INFINITY, NAN}, {-1e300, 1e300}};
    for (const auto& values : kValues) {
        for (const int32_t feature : {5, 23}) all.push_back({"setMiscFeature", 1, feature, 0, 0, values});
    }
    add("getMiscFeature", {0}, {0, 23});
    std::vector<float> ramp(4096);
    for (size_t i = 0; i < ramp.size(); ++i) ramp[i] = static_cast<float>(i) / 64;
    for (const uint64_t display : kDisplays) {
        for (const char* const operation :
             {"setColorTransformMatrix", "getColorTransformMatrix2", "setColorTransformMatrix2",
              "getColorTransformMatrix2", "getColorTransformMatrix", "setGlobalGammaLut", "getGlobalGammaLut",
              "setGlobalGamma", "getGlobalGammaLut", "setGlobalDeGammaLut", "getGlobalDeGammaLut"}) {
            Call& call = all.emplace_back(Call{operation, display});
            call.first = {0.25F, 0.5F, 0, 1, 1, 0, 0, 1, 2};
            call.last = {1, 2, 3, -4, 0.5F, 1e-9F, INFINITY, NAN, -0.0F};
            call.exponent = 2.2F;
            call.table = simulator::tableOf(ramp.data());
        }
    }
    add("setAlad", {0, 1}, {0, 1, -1});
    for (const char* const operation : {"IsAladEnable", "exclusiveModeEnter", "IsAladEnable", "exclusiveModeExit",
                                        "setAlad", "init", "IsAladEnable", "deInit"})
        add(operation, {0}, {7});
    return all;
}

// --- Faults ---

struct Fault {
    std::string name;
    std::string touches;  // part of an event that shows that it matters to a call
    Change make;
};

std::vector<Fault> faults() {
    std::vector<Fault> all;
    const auto add = [&all](const std::string& name, const std::string& touches, const Change& make) {
        all.push_back({name, touches, make});
    };
    const auto addNode = [&](const std::string& name, const std::string& touches, Node Settings::*node,
                             const Lines& texts) {
        add("no " + name, touches, [=](Settings& s) { s.*node = {Kind::MISSING}; });
        add(name + " folder", touches, [=](Settings& s) { s.*node = {Kind::FOLDER}; });
        for (const auto& text : texts) add(name + " " + text, touches, [=](Settings& s) { (s.*node).text = text; });
    };
    // A change of the complete calibration.
    const auto addCalibration = [&](const std::string& name, const std::function<void(Calibration&)>& change) {
        add(name, "panel xml", [=](Settings& s) { change(s.calibrations[0] = Settings().calibrations[0]); });
    };
    const auto addFailures = [&](const std::string& service, const auto& names, auto failures, auto operation) {
        for (size_t i = 0; i < 4 * names.size(); ++i) {
            const std::string name = service + std::string(names[i / 4]);
            const auto failure = Failure(1 + i % 4);
            add(name + std::to_string(i % 4), name,
                [=](Settings& s) { (s.*failures)[decltype(operation)(i / 4)] = failure; });
        }
    };
    addFailures("composer ", simulator::kComposerOperations, &Settings::composerFailures, ComposerOperation());
    addFailures("sensor ", simulator::kSensorOperations, &Settings::sensorFailures, SensorOperation());
    for (const uint32_t count : {0U, 1U, 3U, 1024U, 1025U, UINT32_MAX})
        add(std::to_string(count) + " displays", "getNumOfDisplay ", [=](Settings& s) { s.displays = count; });
    add("no composer", "getNumOfDisplay ", [](Settings& s) { s.composer = false; });
    add("composer restarted", "composer ", [](Settings& s) { ++s.composerLife; });
    add("no sensors", "getDefaultSensor", [](Settings& s) { s.sensors = false; });
    add("no queue", "getDefaultSensor", [](Settings& s) { s.queue = false; });
    add("no threads", "getDefaultSensor", [](Settings& s) { s.threads = false; });

    const std::string kPanelA = "dornel R7TK 35 02 0a hd+ video dsi panel\n";
    const std::string kTrimmed = kPanelA.substr(0, kPanelA.size() - 1);
    addNode("panel", "panel xml", &Settings::panel,
            {"", kPanelA, "dornel R7TK 43 03 0b hd+ video dsi panel\n", kTrimmed, kTrimmed + "\r\n", kPanelA + "\n",
             "Dornel" + kPanelA.substr(6), kPanelA + "\0junk"s, "\0"s + kPanelA, kPanelA + std::string(200, 'x')});
    add("panel A's file", "panel xml", [=](Settings& s) {
        s.panel.text = kPanelA;
        s.calibrations[1] = {Kind::FILE, true, {}, std::vector<float>(9, 0.5F)};
    });
    addNode("white point", "setSmartEnvironmentMode", &Settings::whitePoint,
            {"", "x=313,y=329", "x=313", "x=313,y=", "x=313,y=-\n", " x=313,y=329", "x=313 ,y=329", "x=0.313,y=0.329",
             ",y=329", "X=313,y=329", "x=31\0,y=329"s, "x= -5,y=\t+7 junk", "x=1,y=0x10",
             "x=99999999999999999999,y=-3000000000", "x=2147483648,y=-2147483649",
             "x=313,y=" + std::string(53, ' ') + "3299"});
    addNode("backlight", "node lcd_cabc_mode", &Settings::cabc, {""});

    addCalibration("no file", [](Calibration& c) { c.kind = Kind::MISSING; });
    addCalibration("a folder", [](Calibration& c) { c.kind = Kind::FOLDER; });
    addCalibration("not XML", [](Calibration& c) { c.isWellFormed = false; });
    addCalibration("no block", [](Calibration& c) { c = {}; });
    addCalibration("short white point", [](Calibration& c) { c.whitePoint.pop_back(); });
    addCalibration("short correction", [](Calibration& c) { c.colorCorrection.pop_back(); });
    addCalibration("short parameters", [](Calibration& c) { c.whitePointParams.pop_back(); });
    addCalibration("one end point", [](Calibration& c) { c.endPoints.pop_back(); });
    addCalibration("short eye care", [](Calibration& c) { c.eyeCare.pop_back(); });
    addCalibration("odd range", [](Calibration& c) { c.eyeCare[0] = NAN, c.eyeCare[1] = -1e300; });
    addCalibration("short table", [](Calibration& c) { c.tuned.assign(4095, 0.5F); });
    addCalibration("tuned table", [](Calibration& c) { c.tuned.assign(4096, 0.5F); });
    addCalibration("calibrated table", [](Calibration& c) { c.calibrated.assign(4096, 0.75F); });
    addCalibration("two tables", [](Calibration& c) { c.tuned.resize(4096), c.calibrated.resize(4097); });
    addCalibration("more values", [](Calibration& c) { c.eyeCare.push_back(c.whitePoint.emplace_back(5)); });

    for (size_t i = 0; i < simulator::kClosedFunctions.size(); ++i) {
        const std::string name = "closed " + std::string(simulator::kClosedFunctions[i]);
        add(name, name, [=](Settings& s) {
            s.results[ClosedFunction(i)] = -7;
            for (auto* const values : {&s.gains, &s.coefficients, &s.whiteGains}) values->resize(2);
            s.curves = false;
        });
    }
    add("dark", "closed ", [](Settings& s) { s.gains = s.whiteGains = {0, 0, 0}; });
    return all;
}

long openFiles() {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
}

}  // namespace

// Every call alone in every state; with each fault that touches it, unless a state before had the same events; then
// again without the fault.
TEST(Model, EveryOperationFromEveryStateWithEveryFault) {
    Comparison c;
    const Step end = [](Comparison& each) { return each.end(); };
    const auto allFaults = faults();
    const auto allCalls = calls();
    std::set<Lines> seen;
    std::set<std::string> tried;
    for (const State& state : states()) {
        for (const Call& operation : allCalls) {
            const auto& only = state.operations;
            if (!only.empty() && std::find(only.begin(), only.end(), operation.operation) == only.end()) continue;
            const Step calls = [&](Comparison& each) { return each.call(operation); };
            c.begin(Settings());
            ASSERT_TRUE(holds(c, state.steps)) << state.name;
            const Settings well = c.settings();
            ASSERT_TRUE(holds(c, {calls})) << state.name;
            Lines events = c.events();
            const bool isNew = seen.insert(events).second;
            ASSERT_TRUE(holds(c, {pass(1500ms), light(9000), pass(1500ms)})) << state.name;
            for (const std::string& event : c.events()) events.push_back(event);
            ASSERT_TRUE(holds(c, {end})) << state.name;
            if (!isNew) continue;
            for (const Fault& fault : allFaults) {
                const auto touches = [&](const std::string& event) { return event.find(fault.touches) != event.npos; };
                if (std::none_of(events.begin(), events.end(), touches)) continue;
                c.begin(Settings());
                tried.insert(fault.name);
                holds(c, state.steps);
                const Step recover = [&](Comparison& each) { return each.set(well), ""; };
                ASSERT_TRUE(holds(c, {set(fault.make), calls, pass(1500ms), recover, calls, pass(1500ms), end}))
                    << state.name << ": " << operation.operation << " with " << fault.name;
            }
        }
    }
    for (const Fault& fault : allFaults) EXPECT_TRUE(tried.count(fault.name)) << fault.name << " was never tried";
}

// All calls one after another, while the fault lasts; then again without it, with the answers of a good session. No
// file stays open.
TEST(Model, ASessionGoesWellAfterEveryFault) {
    Comparison c;
    const auto allCalls = calls();
    std::vector<std::string> good;
    const auto session = [&](const std::string& name, std::vector<std::string>& answers) {
        for (const Call& each : allCalls) {
            ASSERT_TRUE(holds(c, {[&](Comparison& both) { return both.call(each); }})) << name;
            if (each.operation != "allocUserHandle") answers.push_back(c.answer());
            if (each.operation != "setAlad") continue;
            ASSERT_TRUE(holds(c, {light(9000), pass(1100ms), light(12000), pass(2s)})) << name;
        }
    };
    const auto begin = [&] {
        c.begin(Settings());
        ASSERT_TRUE(holds(c, {call("init")}));
    };
    begin();
    session("no fault", good);
    const long open = openFiles();
    for (const Fault& fault : faults()) {
        begin();
        ASSERT_TRUE(holds(c, {set(fault.make), call("init")})) << fault.name;
        std::vector<std::string> answers;
        session(fault.name, answers);
        c.set(Settings());
        ASSERT_TRUE(holds(c, {call("init")})) << fault.name;
        answers.clear();
        session("after " + fault.name, answers);
        ASSERT_EQ(answers, good) << fault.name;
        ASSERT_EQ(openFiles(), open) << fault.name;
    }
}

// Lights at the thresholds, beyond the int range and at random, with pauses of any length, and other closed functions.
TEST(Model, TheToneCurveFollowsAnyLight) {
    const float kLights[] = {300,  0,     -5,   -0.7F, 123.9F, 4999,  5000, 5001,      7999,     8000,
                             8001, 20000, 9000, 49999, 60000,  5e10F, NAN,  -INFINITY, INFINITY, 2e9F};
    // Curves that are not written, and levels that are negative or end with the int range.
    const Change kChanges[] = {[](auto& s) { s.curves = !s.curves; },
                               [](auto& s) { s.results[ClosedFunction::GET_AGTM_LEVEL] = -9; },
                               [](auto& s) { s.results[ClosedFunction::GET_AGTM_LEVEL] = INT32_MAX - 24; },
                               [](auto& s) { s.results[ClosedFunction::GET_AGTM_LEVEL] = INT32_MIN; }};
    std::mt19937 random(1);
    const auto below = [&random](size_t count) { return random() % count; };
    Comparison c;
    ASSERT_TRUE(holds(c, {call("init"), call("setAlad", 0, 1)}));
    for (int i = 0; i < 5000; ++i) {
        const float lux = kLights[below(below(2) == 0 ? 12 : std::size(kLights))];
        const auto duration = std::chrono::milliseconds(below(3) == 0 ? below(5000) : 1000);
        ASSERT_TRUE(holds(c, {light(lux), pass(duration)})) << "step " << i << ", " << lux << " lux";
        if (below(50) != 0) continue;
        ASSERT_TRUE(holds(c, {call("setAlad"), set(kChanges[below(std::size(kChanges))]), call("setAlad", 0, 1)}));
    }
}

}  // namespace model
