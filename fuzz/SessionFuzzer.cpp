// SPDX-License-Identifier: Apache-2.0
// A session: bytes become served operations, changes of the phone, light and time. After each step the service's
// answer, events and state are the model's. At the end the phone works again, and so does the service.
#include <android/log.h>
#include <pthread.h>
#include <sched.h>

#include <cinttypes>
#include <cmath>
#include <iterator>
#include <map>
#include <set>
#include <tuple>

#include "fuzz/Input.h"
#include "fuzz/Require.h"
#include "tests/model/Comparison.h"

namespace fuzz {

namespace {

using model::Kind;
using model::Settings;

constexpr uint64_t kDisplays[] = {0, 0, 0, 0, 1, 1, 2, 3, uint64_t{1} << 32, UINT64_MAX};
constexpr uint32_t kCounts[] = {0, 1, 2, 2, 3, 1025, INT32_MAX, UINT32_MAX};
constexpr int32_t kIntegers[] = {0, 1, 2, 3, 4, 5, 7, 23, 24, -1, 100, -100, 300, INT32_MAX, INT32_MIN};
constexpr float kFloats[] = {0, 1, -1, 2, 0.5F, 1 / 2.2F, 2.2F, -0.0F, 1e-7F, 1e30F, -1e30F, NAN, INFINITY, -INFINITY};
constexpr float kLights[] = {300,  0,     -5,    4999,  5000,  5001,   7999,  8000,  8001,      9000,
                             9999, 20000, 30000, 49999, 60000, 123.9F, -0.7F, 5e10F, -INFINITY, NAN};
constexpr int kDurations[] = {0, 1, 19, 20, 21, 500, 979, 980, 1000, 1020, 2000, 5000};  // milliseconds
constexpr simulator::Failure kFailures[] = {
    simulator::Failure::NONE, simulator::Failure::REFUSED,          simulator::Failure::NO_CALLBACK,
    simulator::Failure::NONE, simulator::Failure::TRANSPORT_BEFORE, simulator::Failure::TRANSPORT_AFTER};
const std::string kPanels[] = {"a panel without a row", "dornel R7TK 35 02 0a hd+ video dsi panel\n",
                               "dornel R7TK 43 03 0b hd+ video dsi panel\n"};
const std::string kWhitePoints[] = {"x=313,y=329\n", "x=-5,y= 99999999999", "x=313", "y=1,x=2", ""};

// Counts situations, and prints the counts at the end of the run: scripts/fuzz requires those of situations.txt.
class Situations {
public:
    ~Situations() {
        for (const auto& [name, count] : counts) fprintf(stderr, "situation: %s: %" PRIu64 "\n", name.c_str(), count);
    }
    void add(const std::string& name) { ++counts[name]; }

    // An event on a phone of these settings.
    void add(const simulator::Event& event, const Settings& phone) {
        if (const auto* const call = std::get_if<simulator::ComposerCall>(&event.what)) {
            addFailure(simulator::kComposerOperations, call->operation, phone.composerFailures);
            if (call->operation != simulator::ComposerOperation::SET_ALAD_PARAMS) return;
            if (call->params.size() == 2) add("the tone curve turns on");
            if (call->enable == 0U) add(event.time > disabledAt ? "a ramp is cut short" : "the tone curve turns off");
        } else if (const auto* const sensor = std::get_if<simulator::SensorCall>(&event.what)) {
            addFailure(simulator::kSensorOperations, sensor->operation, phone.sensorFailures);
            if (sensor->operation == simulator::SensorOperation::DISABLE_SENSOR) disabledAt = event.time;
            if (sensor->operation == simulator::SensorOperation::ENABLE_SENSOR) disabledAt = event.time.max();
        }
    }

private:
    template <typename Names, typename Operation>
    void addFailure(const Names& names, Operation operation, const std::map<Operation, simulator::Failure>& failures) {
        constexpr const char* kNames[] = {"works again", "is refused", "does not call back", "fails before",
                                          "fails after"};
        const auto found = failures.find(operation);
        if (found == failures.end()) return;
        const std::string name(names[static_cast<size_t>(operation)]);
        if (found->second != simulator::Failure::NONE)
            failed.insert(name);
        else if (failed.erase(name) == 0)
            return;
        add(name + " " + kNames[static_cast<size_t>(found->second)]);
    }

    std::map<std::string, uint64_t> counts;
    std::set<std::string> failed;  // operations of which the latest call failed
    platform::Clock::Duration disabledAt = platform::Clock::Duration::max();
};

Situations& situations() {
    static Situations all;
    return all;
}

// A phone that works, whose calibration is read quickly.
const Settings& wellPhone() {
    static const Settings kWell = [] {
        Settings well;
        well.calibrations[0] = {};
        well.calibrations[0].endPoints = {0xFFFFEA, 0xEDFDFF};
        return well;
    }();
    return kWell;
}

class Session {
public:
    Session(Input bytes, model::Comparison& comparison) : input(bytes), both(comparison) { steps.reserve(64); }

    void run() {
        while (!input.atEnd()) step();
        phone = wellPhone();
        change();
        expect(both.call({"init"}));
        require(both.answer() == "0", "the service starts on a phone that works again");
        expect(both.call({"setUnlimitedCT", 1, 5}));
        require(both.answer() == "OK", "and sets a level");
        expect(both.end());
        both.begin(phone);  // for the next session; so that a session that leaks nothing allocates as often as it frees
    }

private:
    void expect(const std::string& difference) {
        if (difference.empty()) return;
        for (const auto& [what, display, number] : steps)
            fprintf(stderr, "%s %" PRIu64 " %g; ", what.c_str(), display, number);
        require(false, difference);
    }

    void step() {
        static const std::vector<std::string> kOperations = model::operations();
        const size_t choice = input.below(kOperations.size() + 2 + std::size(kChanges) + 2);
        const size_t other = choice - kOperations.size();
        if (choice < kOperations.size()) {
            call(callOf(kOperations[choice]));
        } else if (other == 0) {
            light(input.oneOf(kLights));
        } else if (other == 1) {
            pass(input.oneOf(kDurations));
        } else if (other < 2 + std::size(kChanges)) {
            steps.emplace_back("change", 0, other - 2);
            (this->*kChanges[other - 2])();
            change();
        } else if (other == 2 + std::size(kChanges)) {
            failComposer();
        } else {
            followLight();
        }
    }
    void call(const model::Call& next) {
        steps.emplace_back(next.operation, next.display, next.number);
        expect(both.call(next));
        count(next.operation);
    }
    void light(float lux) {
        steps.emplace_back("light", 0, static_cast<double>(lux));
        expect(both.light(lux));
    }
    void pass(int milliseconds) {
        steps.emplace_back("milliseconds", 0, milliseconds);
        expect(both.pass(std::chrono::milliseconds(milliseconds)));
    }
    // An operation of the composer fails while ALAD is on, and one of the service needs it.
    void failComposer() {
        constexpr const char* kUsers[] = {"init",
                                          "init",
                                          "setColorTransformMatrix",
                                          "getColorTransformMatrix",
                                          "setGlobalGammaLut",
                                          "getGlobalGammaLut",
                                          "setGlobalDeGammaLut",
                                          "getGlobalDeGammaLut",
                                          "setAlad",
                                          "exclusiveModeEnter"};
        followLight();
        const size_t operation = composerFailure();
        change();
        call({kUsers[operation]});
    }
    // ALAD is switched on and the tone curve with it.
    void followLight() {
        if (!isStarted) call({"init"});
        call({"setAlad", 0, 1});
        light(9000);
        pass(input.oneOf(kDurations));
    }
    // Counts the situations that a call's answer shows.
    void count(const std::string& operation) {
        const std::string& answer = both.answer();
        isStarted = operation == "init" ? answer == "0" : isStarted && operation != "deInit";
        if (operation == "setAlad" && answer == "FAILED" && both.events().size() == 5) situations().add("no thread");
        const bool hasRead = operation == "init" ? answer == "0" : operation == "exclusiveModeExit" && answer == "OK";
        if (!hasRead) return;
        const std::string& panel = phone.panel.kind == Kind::FILE ? phone.panel.text : "";
        if (!lastPanel.empty() && panel != lastPanel) situations().add("another panel is read");
        lastPanel = panel;
    }
    // The composer's life continues from the session before.
    void change() {
        phone.composerLife += both.settings().composerLife;
        both.set(phone);
        phone.composerLife = 0;
    }

    model::Call callOf(const std::string& operation) {
        model::Call call{operation, input.oneOf(kDisplays), input.oneOf(kIntegers)};
        if (operation == "setFeature") {
            call.value = input.oneOf(kIntegers);
            call.value2 = input.oneOf(kIntegers);
        } else if (operation == "setMiscFeature") {
            constexpr size_t kSizes[] = {2, 2, 2, 0, 1, 3};
            for (const float value : numbers(input.oneOf(kSizes))) call.values.push_back(static_cast<double>(value));
        } else if (operation == "setGlobalGamma") {
            call.exponent = number();
        } else if (operation == "setGlobalGammaLut" || operation == "setGlobalDeGammaLut") {
            call.table = flatTable(number());
        } else if (operation.rfind("setColorTransformMatrix", 0) == 0) {
            call.first = simulator::matrixOf(numbers(9).data());
            call.last = simulator::matrixOf(numbers(9).data());
        }
        return call;
    }
    // One that matters, or one from -3 to 3.
    float number() {
        const size_t choice = input.byte();
        return choice < std::size(kFloats) ? kFloats[choice] : (static_cast<float>(choice) - 128) / 32;
    }
    // Made once for each number: it takes long.
    static const simulator::Table& flatTable(float entries) {
        static std::map<std::string, simulator::Table> tables;
        simulator::Table& table = tables[simulator::floatText(entries)];
        if (table == nullptr) table = simulator::tableOf(std::vector<float>(4096, entries).data());
        return table;
    }
    std::vector<float> numbers(size_t count) {
        std::vector<float> values(count);
        for (float& value : values) value = number();
        return values;
    }

    // Changes of the phone.
    void services() {
        phone.composer = input.below(4) != 0;
        phone.sensors = input.below(4) != 0;
        phone.queue = input.below(4) != 0;
        phone.threads = input.below(4) != 0;
        phone.composerLife = input.below(4) == 1 ? 1 : 0;
    }
    void displays() { phone.displays = input.oneOf(kCounts); }
    size_t composerFailure() {
        const size_t operation = input.below(simulator::kComposerOperations.size());
        phone.composerFailures[simulator::ComposerOperation(operation)] = input.oneOf(kFailures);
        return operation;
    }
    void failOne() { composerFailure(); }
    void sensorFailure() {
        const size_t operation = input.below(simulator::kSensorOperations.size());
        phone.sensorFailures[simulator::SensorOperation(operation)] = input.oneOf(kFailures);
    }
    void nodes() {
        constexpr Kind kKinds[] = {Kind::FILE, Kind::FILE, Kind::FOLDER, Kind::MISSING};
        phone.panel = {input.oneOf(kKinds), input.oneOf(kPanels)};
        phone.whitePoint = {input.oneOf(kKinds), input.oneOf(kWhitePoints)};
        phone.cabc.kind = input.oneOf(kKinds);
    }
    // Each block with a value too few, exactly enough, or too many.
    void calibration() {
        model::Calibration& file = phone.calibrations[input.below(phone.calibrations.size())];
        file = {};
        constexpr Kind kKinds[] = {Kind::FILE, Kind::FILE, Kind::FILE, Kind::FOLDER, Kind::MISSING};
        file.kind = input.oneOf(kKinds);
        file.isWellFormed = input.below(8) != 0;
        constexpr size_t kSizes[] = {0, 8, 9, 10};
        for (auto* const matrix : {&file.whitePoint, &file.colorCorrection, &file.whitePointParams})
            *matrix = numbers(input.oneOf(kSizes));
        for (auto* const table : {&file.calibrated, &file.tuned})
            table->assign(input.below(100) == 99 ? 4096 : 0, number());  // rarely, because it takes long
        for (size_t left = input.below(3); left > 0; --left) file.endPoints.push_back(input.oneOf(kIntegers));
        constexpr size_t kEyeCareSizes[] = {0, 37, 38, 40};
        const double base = static_cast<double>(number());
        for (size_t left = input.oneOf(kEyeCareSizes); left > 0; --left)
            file.eyeCare.push_back(static_cast<double>(left) * 100.7 + base);
    }
    void closedLibraries() {
        phone.gains = numbers(input.below(4));
        phone.coefficients = numbers(input.below(10));
        phone.whiteGains = numbers(input.below(4));
        phone.curves = input.below(4) != 0;
        const size_t function = input.below(simulator::kClosedFunctions.size());
        phone.results[simulator::ClosedFunction(function)] = input.oneOf(kFailingResults);
    }

    static constexpr int kFailingResults[] = {0, -1, -7, 40};
    static constexpr void (Session::*kChanges[])() = {
        &Session::services, &Session::displays,    &Session::failOne,        &Session::sensorFailure,
        &Session::nodes,    &Session::calibration, &Session::closedLibraries};

    Input input;
    model::Comparison& both;
    Settings phone = wellPhone();
    bool isStarted = false;
    std::string lastPanel;                                         // that the calibration was read for
    std::vector<std::tuple<std::string, uint64_t, double>> steps;  // with their arguments
};

}  // namespace

}  // namespace fuzz

// One processor: the threads of a session take turns, and to wake one on another processor takes longer. Small stacks:
// the address sanitizer clears its record of a thread's stack when the thread begins and ends.
extern "C" int LLVMFuzzerInitialize(int*, char***) {
    cpu_set_t processors;
    CPU_ZERO(&processors);
    CPU_SET(sched_getcpu(), &processors);
    sched_setaffinity(0, sizeof(processors), &processors);
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, size_t{128} * 1024);
    return pthread_setattr_default_np(&attributes);
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    __android_log_set_minimum_priority(ANDROID_LOG_SILENT);  // formatting takes long; the tests compare the log
    static model::Comparison comparison(fuzz::wellPhone());
    comparison.observer = [](const auto& event) { fuzz::situations().add(event, comparison.settings()); };
    fuzz::Session(fuzz::Input(data, size), comparison).run();
    return 0;
}
