// SPDX-License-Identifier: Apache-2.0
// The service against the model: every operation from every state, with every fault of the phone.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <random>
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

Step displays(uint32_t count) {
    return set([=](Settings& s) { s.displays = count; });
}
Step fail(ComposerOperation operation, Failure failure) {
    return set([=](Settings& s) { s.composerFailures[operation] = failure; });
}

std::vector<State> states() {
    const Step init = call("init");
    const Step on = call("setAlad", 0, 1);
    std::vector<State> all = {
        {"new", {}},
        {"no display", {displays(0), init}},
        {"one display", {displays(1), init}},
        {"two displays", {init}},
        {"stopped", {init, call("setEyeCareCT", 0, 3), call("deInit")}},
        {"count refused",
         {init, fail(ComposerOperation::GET_NUM_OF_DISPLAY, Failure::REFUSED), init,
          set([](Settings& s) { s.composerFailures.clear(); })}},
        {"composer not found",
         {init, set([](Settings& s) { s.composer = false; }), init, set([](Settings& s) { s.composer = true; })}},
        {"composer restarted", {init, call("setUnlimitedCT", 1, 5), set([](Settings& s) { ++s.composerLife; })}},
        {"a display more", {init, call("setUnlimitedCT", 1, 5), displays(3), init}},
        {"a display fewer", {init, call("setUnlimitedCT", 1, 5), displays(1), init}},
        {"started again without the matrices",
         {init, set([](Settings& s) {
              s.calibrations[0] = {Calibration::File::GOOD, {1, 2}};
          }),
          init}},
        {"standard mode", {init, call("setUnlimitedCT", 0, 5), call("setStandardMode")}},
        {"enhanced mode", {init, call("setEyeCareCT", 0, 5), call("setEnhanceScreenMode")}},
        {"smart environment mode", {init, call("setUnlimitedCT", 1, 5), call("setSmartEnvironmentMode")}},
        {"exclusive", {init, call("setStandardMode"), call("exclusiveModeEnter", 0, 1)}},
        {"stopped, ALAD on", {init, on, light(9000), pass(1010ms), call("deInit")}},
    };
    // Milliseconds in the phases of the tone curve: waiting, start message, ramp and its end; the same to another
    // level; the same down to the off message.
    for (const int at : {0, 999, 1000, 1019, 1020, 1050, 1060, 3060, 3090, 3140, 5140, 5250, 5270, 5290, 5300, 7000}) {
        const auto goTo = [at](int from, int to) {
            return pass(std::chrono::milliseconds(std::clamp(at, from, to) - from));
        };
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
    const Matrix odd = {1, 2, 3, -4, 0.5F, 1e-9F, INFINITY, NAN, -0.0F};
    const Matrix even = {0.25F, 0.25F, 0, 1, 1, 0, 0, 1, 2};
    std::array<float, 4096> ramp{};
    for (size_t i = 0; i < ramp.size(); ++i) ramp[i] = static_cast<float>(i) / 64;
    std::vector<Call> all;
    const auto add = [&all](const char* operation, std::initializer_list<uint64_t> displays,
                            std::initializer_list<int32_t> numbers = {0}) {
        for (const uint64_t display : displays) {
            for (const int32_t number : numbers) all.push_back({operation, display, number});
        }
    };
    const std::initializer_list<uint64_t> kDisplays = {0, 1, 2, 1ULL << 32};
    add("allocUserHandle", {0}, {0, -1});
    add("freeUserHandle", {0});
    add("getNumOfDisplay", {0});
    add("getDisplayInfo", kDisplays);
    add("setUnlimitedCT", kDisplays, {7});
    add("getUnlimitedCT", kDisplays);
    add("setEyeCareCT", kDisplays, {INT32_MIN});
    add("getEyeCareCT", kDisplays);
    add("setCabcMode", {9}, {0, 1, 2, 3, 4, 5, -1, INT32_MAX});
    add("setStandardMode", kDisplays);
    add("setCabcMode", {9}, {3});
    add("setEnhanceScreenMode", kDisplays);
    add("setCabcMode", {9}, {3});
    add("setSmartEnvironmentMode", kDisplays);
    add("setCabcMode", {9}, {0, 1, 2, 3, 4, 5, -1, INT32_MAX});
    add("setCabcSysNode", {9}, {0, 9, 12, -49, 208, INT32_MAX});
    for (int32_t feature = -1; feature <= 24; ++feature) all.push_back({"setFeature", 0, feature, 3, -9});
    for (const int32_t feature : {0, 1, 2, 3, 7, 23}) all.push_back({"setFeature", 2, feature, 9});
    const std::vector<std::vector<double>> kValues = {
        {}, {1}, {1, 2, 3}, {2.9, -1.9}, {-0.9, 0.9}, {INFINITY, NAN}, {-1e300, 1e300}};
    for (const auto& values : kValues) {
        all.push_back({"setMiscFeature", 1, 23, 0, 0, values});
        all.push_back({"setMiscFeature", 1, 5, 0, 0, values});
    }
    add("getMiscFeature", {0}, {0, 23});
    for (const uint64_t display : kDisplays) {
        all.push_back({"setColorTransformMatrix", display});
        all.back().last = odd;
        all.push_back({"getColorTransformMatrix2", display});
        all.push_back({"setColorTransformMatrix2", display});
        all.back().first = odd;
        all.back().last = even;
        all.push_back({"getColorTransformMatrix2", display});
        all.push_back({"getColorTransformMatrix", display});
        all.push_back({"setGlobalGammaLut", display});
        all.back().table = simulator::tableOf(ramp.data());
        all.push_back({"getGlobalGammaLut", display});
        all.push_back({"setGlobalGamma", display});
        all.back().exponent = 2.2F;
        all.push_back({"getGlobalGammaLut", display});
        all.push_back({"setGlobalDeGammaLut", display});
        all.back().table = simulator::tableOf(ramp.data());
        all.push_back({"getGlobalDeGammaLut", display});
    }
    add("setAlad", {0}, {0, 1, -1});
    add("IsAladEnable", {0, 9});
    add("setAlad", {1}, {0, 1});
    add("exclusiveModeEnter", {0}, {-1});
    add("IsAladEnable", {0});
    add("exclusiveModeExit", {0}, {1});
    add("setAlad", {0}, {7});
    add("init", {0});
    add("setAlad", {0}, {0});
    add("deInit", {0});
    return all;
}

// --- Faults ---

struct Fault {
    std::string name;
    std::string touches;  // part of an event that shows that it matters to a call
    Change make;
};

std::vector<Fault> faults() {
    const std::pair<Failure, std::string> kFailures[] = {{Failure::REFUSED, " refused"},
                                                         {Failure::NO_CALLBACK, " without callback"},
                                                         {Failure::TRANSPORT_BEFORE, " not sent"},
                                                         {Failure::TRANSPORT_AFTER, " not answered"}};
    std::vector<Fault> all;
    for (const auto& [failure, name] : kFailures) {
        for (size_t i = 0; i < simulator::kComposerOperations.size(); ++i) {
            const std::string operation(simulator::kComposerOperations[i]);
            all.push_back({operation + name, "composer " + operation + " ", [=, failure = failure](Settings& s) {
                               s.composerFailures[static_cast<ComposerOperation>(i)] = failure;
                           }});
        }
        for (size_t i = 0; i < simulator::kSensorOperations.size(); ++i) {
            const std::string operation(simulator::kSensorOperations[i]);
            all.push_back({operation + name, "sensor " + operation, [=, failure = failure](Settings& s) {
                               s.sensorFailures[static_cast<SensorOperation>(i)] = failure;
                           }});
        }
    }
    for (const uint32_t count : {0U, 1U, 3U, 1024U, 1025U, UINT32_MAX})
        all.push_back(
            {std::to_string(count) + " displays", "getNumOfDisplay ", [=](Settings& s) { s.displays = count; }});
    const std::string kStart = "sensor getDefaultSensor";
    all.push_back({"no composer", "getNumOfDisplay ", [](Settings& s) { s.composer = false; }});
    all.push_back({"composer restarted", "composer ", [](Settings& s) { ++s.composerLife; }});
    all.push_back({"no sensors", kStart, [](Settings& s) { s.sensors = false; }});
    all.push_back({"no queue", kStart, [](Settings& s) { s.queue = false; }});
    all.push_back({"no threads", kStart, [](Settings& s) { s.threads = false; }});

    const auto addNodes = [&all](const char* name, const char* touches, Node Settings::*node,
                                 const std::vector<std::string>& texts) {
        for (const auto kind : {Node::Kind::FOLDER, Node::Kind::MISSING})
            all.push_back({name + " "s + std::to_string(static_cast<int>(kind)), touches,
                           [=](Settings& s) { s.*node = {kind}; }});
        for (const auto& text : texts)
            all.push_back({name + " "s + text, touches, [=](Settings& s) { s.*node = {Node::Kind::FILE, text}; }});
    };
    const std::string kPanelA = "dornel R7TK 35 02 0a hd+ video dsi panel\n";
    const std::string kPanelB = "dornel R7TK 43 03 0b hd+ video dsi panel\n";
    const std::string kTrimmed = kPanelA.substr(0, kPanelA.size() - 1);
    addNodes("panel", "panel xml", &Settings::panel,
             {"", kPanelA, kPanelB, kTrimmed, kTrimmed + "\r\n", kPanelA + "\n", "Dornel" + kPanelA.substr(6),
              kPanelA + "\0junk"s, "\0"s + kPanelA, kPanelA + std::string(200, 'x')});
    addNodes("white point", "setSmartEnvironmentMode", &Settings::whitePoint,
             {"", "x=313,y=329", "x=313", "x=313,y=", "x=313,y=-\n", " x=313,y=329", "x=313 ,y=329", "x=0.313,y=0.329",
              "X=313,y=329", "x=31\0,y=329"s, "x= -5,y=\t+7 junk", "x=1,y=0x10", "x=99999999999999999999,y=-3000000000",
              "x=2147483648,y=-2147483649", "x=313,y=" + std::string(53, ' ') + "3299"});
    addNodes("backlight", "node lcd_cabc_mode", &Settings::cabc, {""});

    const auto addCalibration = [&all](const char* name, const std::function<void(Calibration&)>& change) {
        all.push_back({"calibration "s + name, "panel xml",
                       [=](Settings& s) { change(s.calibrations[0] = Settings().calibrations[0]); }});
    };
    using File = Calibration::File;
    for (const File file : {File::MISSING, File::FOLDER, File::MALFORMED})
        addCalibration("file", [=](Calibration& c) { c.file = file; });
    addCalibration("empty", [](Calibration& c) { c = {File::GOOD}; });
    addCalibration("white point", [](Calibration& c) { c.whitePoint.pop_back(); });
    addCalibration("correction", [](Calibration& c) { c.colorCorrection.pop_back(); });
    addCalibration("parameters", [](Calibration& c) { c.whitePointParams.pop_back(); });
    addCalibration("end points", [](Calibration& c) { c.endPoints.pop_back(); });
    addCalibration("eye care", [](Calibration& c) { c.eyeCare.pop_back(); });
    addCalibration("eye care range", [](Calibration& c) {
        c.eyeCare[0] = -1e300;
        c.eyeCare[1] = NAN;
    });
    addCalibration("a table short", [](Calibration& c) { c.tuned.assign(4095, 0.5F); });
    addCalibration("tuned", [](Calibration& c) { c.tuned.assign(4096, 0.5F); });
    addCalibration("calibrated", [](Calibration& c) { c.calibrated.assign(4096, 0.75F); });
    addCalibration("two tables", [](Calibration& c) {
        c.tuned.assign(4096, 0.5F);
        c.calibrated.assign(4096, 0.75F);
    });
    addCalibration("more values", [](Calibration& c) {
        c.whitePoint.push_back(5);
        c.eyeCare.push_back(5);
    });
    all.push_back({"panel A's file", "panel xml", [=](Settings& s) {
                       s.panel.text = kPanelA;
                       s.calibrations[1] = {File::GOOD, {}, std::vector<float>(9, 0.5F)};
                   }});

    for (size_t i = 0; i < simulator::kClosedFunctions.size(); ++i) {
        const std::string name(simulator::kClosedFunctions[i]);
        all.push_back({name + " fails", "closed " + name, [=](Settings& s) {
                           s.results[static_cast<ClosedFunction>(i)] = -7;
                           s.gains.pop_back();  // what has been written is used
                           s.coefficients.pop_back();
                           s.whiteGains.pop_back();
                           s.curves = false;
                       }});
    }
    all.push_back({"dark", "closed ", [](Settings& s) { s.gains = s.whiteGains = {0, 0, 0}; }});
    return all;
}

}  // namespace

// Every call alone in every state, without and with each fault that touches it; then again without the fault.
TEST(Model, EveryOperationFromEveryStateWithEveryFault) {
    Comparison c;
    const Step end = [](Comparison& each) { return each.end(); };
    const auto allFaults = faults();
    const auto allCalls = calls();
    for (const State& state : states()) {
        for (const Call& operation : allCalls) {
            const auto& only = state.operations;
            if (!only.empty() && std::find(only.begin(), only.end(), operation.operation) == only.end()) continue;
            const Step calls = [&](Comparison& each) { return each.call(operation); };
            c.begin(Settings());
            ASSERT_TRUE(holds(c, state.steps)) << state.name;
            const Settings well = c.settings();
            ASSERT_TRUE(holds(c, {calls})) << state.name;
            const Lines events = c.events();
            ASSERT_TRUE(holds(c, {pass(1500ms), light(9000), pass(1500ms), end})) << state.name;
            for (const Fault& fault : allFaults) {
                const auto touches = [&](const std::string& event) { return event.find(fault.touches) != event.npos; };
                if (std::none_of(events.begin(), events.end(), touches)) continue;
                c.begin(Settings());
                holds(c, state.steps);
                const Step recover = [&](Comparison& each) { return each.set(well), ""; };
                ASSERT_TRUE(holds(c, {set(fault.make), calls, pass(1500ms), recover, calls, pass(1500ms), end}))
                    << state.name << ": " << operation.operation << " with " << fault.name;
            }
        }
    }
}

// All calls one after another, while the fault lasts; then again without it, with the answers of a good session.
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
    }
}

// Lights at the thresholds, beyond the int range and at random, with pauses of any length, and other closed functions.
TEST(Model, TheToneCurveFollowsAnyLight) {
    const float kLights[] = {300,  0,     -5,   -0.7F, 123.9F, 4999,  5000, 5001,      7999,     8000,
                             8001, 20000, 9000, 49999, 60000,  5e10F, NAN,  -INFINITY, INFINITY, 2e9F};
    const Change kChanges[] = {[](auto& s) { s.results[ClosedFunction::GET_AGTM_LEVEL] = -3; },
                               [](auto& s) { s.results.clear(); }, [](auto& s) { s.curves = !s.curves; }};
    std::mt19937 random(1);
    const auto below = [&random](size_t count) { return random() % count; };
    Comparison c;
    ASSERT_TRUE(holds(c, {call("init"), call("setAlad", 0, 1)}));
    for (int i = 0; i < 5000; ++i) {
        const float lux = kLights[below(below(2) == 0 ? 12 : std::size(kLights))];
        const auto duration = std::chrono::milliseconds(below(3) == 0 ? below(5000) : 1000);
        ASSERT_TRUE(holds(c, {light(lux), pass(duration)})) << "step " << i << ", " << lux << " lux";
        if (below(50) != 0) continue;
        ASSERT_TRUE(holds(c, {call("setAlad"), set(kChanges[below(3)]), call("setAlad", 0, 1)}));
    }
}

}  // namespace model
