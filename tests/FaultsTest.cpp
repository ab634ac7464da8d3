// Everything around the service fails, each call of it once: what a session of all operations answers then, and that
// the same session goes well afterwards.
#include <algorithm>
#include <cerrno>
#include <functional>
#include <map>

#include "tests/LightTest.h"

namespace vendor::kov::hardware::display_control::V1_0::implementation {

namespace {

using fakes::Fault;

const std::string kZeros = " [0 0 0 0 0 0 0 0 0]";

template <typename T>
std::string number(T value) {
    return std::to_string(value);
}
std::string number(Result result) {
    return number(static_cast<int64_t>(result));
}
template <typename T>
std::string number(Return<T> result) {
    return number(static_cast<T>(result));
}

std::string matrix(const ColorTransformMatrix& m) {
    return " " + fakes::text(m.elements.data(), 9);
}
std::string samples(const GammaLut& table) {
    const float values[] = {table.entries[0], table.entries[2048], table.entries[4095]};
    return " " + fakes::text(values, 3);
}

// How the faults of a step's calls show in what it answers.
enum class Kind {
    PLAIN,    // not at all
    RESULT,   // the composer's Result is passed on
    VALUES,   // the composer's Result and values are
    START,    // a start: fails when the count of displays does not arrive
    INFO,     // what the last start learned of a display
    LIGHT,    // switches ALAD on: fails when the sensor cannot be used
    LIGHTED,  // whether ALAD is on
};

struct Step {
    std::string name;
    Kind kind;
    std::function<std::string()> run;
    std::string well;   // its answer when nothing fails
    std::string other;  // while the count of displays is not known, if that makes a difference; VALUES: lost values
};

// A fault of a service's calls: of one of them, or of all from there on.
struct Planned {
    Fault what;
    size_t at;
    bool lasting;

    bool hits(size_t call) const { return what != Fault::NONE && (lasting ? call >= at : call == at); }
};

bool isOneOf(Fault fault, std::initializer_list<Fault> faults) {
    return std::find(faults.begin(), faults.end(), fault) != faults.end();
}
bool losesTheCallback(Fault fault) {
    return isOneOf(fault, {Fault::SILENT, Fault::UNREACHABLE, Fault::DIES_AFTER_ANSWER});
}
bool losesTheTransport(Fault fault) {
    return isOneOf(fault, {Fault::UNREACHABLE, Fault::DIES_AFTER_ANSWER});
}
bool losesTheResult(Fault fault) {
    return fault == Fault::REFUSES || losesTheTransport(fault);
}

// What follows from the faults of earlier steps.
struct Consequences {
    bool countUnknown = false;
    std::map<char, bool> infoLost;  // display's digit
    bool withoutLight = false;
};

std::string replaceResult(const std::string& well, const std::string& result) {
    return result + (well.find(' ') == std::string::npos ? "" : well.substr(well.find(' ')));
}

// The answer of a step whose first calls of the composer and of the sensors, if it makes any, have those numbers.
std::string expected(const Step& step, const Planned& composer, const Planned& sensors, size_t composerFirst,
                     size_t sensorsFirst, Consequences& so) {
    const bool hit = composer.hits(composerFirst);
    switch (step.kind) {
        case Kind::START:
            so.countUnknown = hit && (losesTheCallback(composer.what) || composer.what == Fault::REFUSES);
            for (size_t d = 0; d < 2; ++d) {
                so.infoLost[static_cast<char>('0' + d)] =
                    composer.hits(composerFirst + 1 + d) && losesTheCallback(composer.what);
            }
            return so.countUnknown ? "-2" : step.well;
        case Kind::LIGHT: {
            const bool noSensor = sensors.hits(sensorsFirst) || sensors.hits(sensorsFirst + 1);
            const bool lost = losesTheCallback(sensors.what) || sensors.what == Fault::REFUSES;
            so.withoutLight = (noSensor && lost) || (sensors.hits(sensorsFirst + 2) && losesTheResult(sensors.what));
            return so.withoutLight ? "-5" : step.well;
        }
        case Kind::LIGHTED:
            return so.withoutLight ? "0" : step.well;
        case Kind::RESULT:
            if (hit && composer.what == Fault::REFUSES) return number(fakes::kRefusal);
            return hit && losesTheTransport(composer.what) ? "-5" : step.well;
        case Kind::VALUES: {
            if (hit && composer.what == Fault::REFUSES) return replaceResult(step.well, number(fakes::kRefusal));
            if (!hit || !losesTheCallback(composer.what)) return step.well;
            return (losesTheTransport(composer.what) ? "-5" : "0") + step.other;
        }
        case Kind::INFO:
            if (so.countUnknown) return step.other;
            return so.infoLost[step.name.back()] ? "0: 0 0 0, " : step.well;
        case Kind::PLAIN:
            break;
    }
    return so.countUnknown && !step.other.empty() ? step.other : step.well;
}

}  // namespace

class FaultsTest : public LightTest {
protected:
    FaultsTest() {
        phone.write(fakes::kPanelNameNode, "some panel\n");
        phone.write(fakes::kWhitePointNode, "x=313,y=329\n");
        std::string ones;
        for (int i = 0; i < 4096; ++i) ones += "<v>1</v>";
        calibrate(block("CTM_WPC", {0.5, 0, 0, 0, 1, 0, 0, 0, 1}) + "<Gamma_Calib>" + ones + "</Gamma_Calib>" +
                  block("WPCParam", std::vector<double>(9, 1)) + block("EyeCare", std::vector<double>(38, 1)));
        fakes::closedLibraries().gains = {1, 0.5, 0.25};
        fakes::closedLibraries().whiteGains = {1, 1, 0.5};
        std::fill_n(low.elements.data(), 9, 0.25F);
        std::fill_n(table->entries.data(), 4096, 0.75F);
    }

    // Every served operation, those that matter to others first.
    std::vector<Step> session() {
        return {
            {"init", Kind::START, [this] { return number(service.init()); }, "0", ""},
            {"init again", Kind::START, [this] { return number(service.init()); }, "0", ""},
            {"allocUserHandle", Kind::PLAIN, [this] { return handleResult(); }, "0", ""},
            {"freeUserHandle", Kind::PLAIN, [this] { return number(service.freeUserHandle(7)); }, "0", ""},
            {"getNumOfDisplay", Kind::PLAIN, [this] { return number(numOfDisplay()); }, "2", "4294967295"},
            {"getDisplayInfo 0", Kind::INFO, [this] { return displayInfo(0); }, "0: 1 2 3, display 0", "-3: 0 0 0, 0"},
            {"getDisplayInfo 1", Kind::INFO, [this] { return displayInfo(1); }, "0: 11 12 13, display 1",
             "-3: 0 0 0, 0"},
            {"setColorTransformMatrix", Kind::RESULT,
             [this] { return number(service.setColorTransformMatrix(7, 1, low)); }, "0", ""},
            {"getColorTransformMatrix", Kind::VALUES, [this] { return firstMatrix(1); }, "0 I", kZeros},
            {"setColorTransformMatrix2", Kind::RESULT,
             [this] { return number(service.setColorTransformMatrix2(7, 9, low, low)); }, "0", ""},
            {"getColorTransformMatrix2", Kind::VALUES, [this] { return bothMatrices(1); },
             "0 I [0.25 0.25 0.25 0.25 0.25 0.25 0.25 0.25 0.25]", kZeros + kZeros},
            {"setGlobalGammaLut", Kind::PLAIN, [this] { return number(service.setGlobalGammaLut(7, 0, *table)); }, "0",
             ""},
            {"getGlobalGammaLut", Kind::VALUES, [this] { return gammaTable(); }, "0 [0.75 0.75 0.75]", " [0 0 0]"},
            {"setGlobalDeGammaLut", Kind::PLAIN, [this] { return number(service.setGlobalDeGammaLut(7, 0, *table)); },
             "0", ""},
            {"getGlobalDeGammaLut", Kind::VALUES, [this] { return deGammaTable(); }, "0 [0.75 0.75 0.75]", " [0 0 0]"},
            {"setGlobalGamma", Kind::PLAIN, [this] { return number(service.setGlobalGamma(7, 0, 1.0F)); }, "0", ""},
            {"getGlobalGammaLut of it", Kind::VALUES, [this] { return gammaTable(); }, "0 [0 0.5 0.999755859]",
             " [0 0 0]"},
            {"setUnlimitedCT", Kind::PLAIN, [this] { return number(service.setUnlimitedCT(7, 0, 40)); }, "0", "-5"},
            {"getUnlimitedCT", Kind::PLAIN, [this] { return unlimitedLevel(0); }, "0 40", "-5 0"},
            {"setEyeCareCT", Kind::PLAIN, [this] { return number(service.setEyeCareCT(7, 1, 41)); }, "0", "-5"},
            {"getEyeCareCT", Kind::PLAIN, [this] { return eyeCareLevel(1); }, "0 41", "-5 0"},
            {"setStandardMode", Kind::PLAIN, [this] { return number(service.setStandardMode(7, 0, 0)); }, "0", "-5"},
            {"setEnhanceScreenMode", Kind::PLAIN, [this] { return number(service.setEnhanceScreenMode(7, 1, 0)); }, "0",
             "-5"},
            {"setCabcSysNode", Kind::PLAIN, [this] { return number(service.setCabcSysNode(7, 0, 3)); }, "0", ""},
            {"setSmartEnvironmentMode", Kind::PLAIN,
             [this] { return number(service.setSmartEnvironmentMode(7, 0, 0)); }, "0", "-5"},
            {"setCabcMode", Kind::PLAIN, [this] { return number(service.setCabcMode(7, 0, 4)); }, "0", ""},
            {"setFeature 2", Kind::PLAIN, [this] { return number(service.setFeature(7, 0, 2, 0, 0)); }, "0", ""},
            {"setFeature 23", Kind::PLAIN, [this] { return number(service.setFeature(7, 1, 23, 5, 0)); }, "0", "-5"},
            {"setMiscFeature", Kind::PLAIN, [this] { return miscFeature(); }, "0", "-5"},
            {"getMiscFeature", Kind::PLAIN, [this] { return unreadFeature(); }, "-5", ""},
            {"setAlad on", Kind::LIGHT, [this] { return number(switchAladFor(3)); }, "0", ""},
            {"IsAladEnable", Kind::LIGHTED, [this] { return number(service.IsAladEnable(7, 0)); }, "1", ""},
            {"setAlad off", Kind::PLAIN, [this] { return number(service.setAlad(7, 0, 0)); }, "0", ""},
            {"IsAladEnable after", Kind::PLAIN, [this] { return number(service.IsAladEnable(7, 0)); }, "0", ""},
            {"setAlad on again", Kind::LIGHT, [this] { return number(switchAladFor(1)); }, "0", ""},
            {"exclusiveModeEnter", Kind::PLAIN, [this] { return number(service.exclusiveModeEnter(7, 1)); }, "0", ""},
            {"IsAladEnable in it", Kind::PLAIN, [this] { return number(service.IsAladEnable(7, 0)); }, "0", ""},
            {"exclusiveModeExit", Kind::PLAIN, [this] { return number(service.exclusiveModeExit(7, 0)); }, "0", ""},
            {"deInit", Kind::PLAIN, [this] { return service.deInit(), "done"; }, "done", ""},
            {"setAlad without a composer", Kind::PLAIN, [this] { return number(service.setAlad(7, 0, 1)); }, "-5", ""},
        };
    }

    // Runs the session on a service of its own; that many calls of the composer and of the sensors were made.
    std::pair<size_t, size_t> runWith(const Planned& atComposer, const Planned& atSensors) {
        renewService();
        plan(*composer, atComposer);
        plan(*sensors, atSensors);
        Consequences so;
        for (const Step& step : session()) {
            const size_t composerFirst = composer->calls() + 1;
            const size_t sensorsFirst = sensors->calls() + 1;
            const std::string answer = step.run();
            EXPECT_EQ(answer, expected(step, atComposer, atSensors, composerFirst, sensorsFirst, so)) << step.name;
        }
        const std::pair<size_t, size_t> made(composer->calls(), sensors->calls());
        plan(*composer, {});
        plan(*sensors, {});
        return made;
    }

    // The same session on the same service: nothing of the fault is left.
    void expectAllWell() {
        for (const Step& step : session()) EXPECT_EQ(step.run(), step.well) << step.name << ", afterwards";
        happened();
    }

    template <typename Service>
    static void plan(Service& service, const Planned& fault) {
        fault.lasting ? service.faultFrom(fault.at, fault.what) : service.faultAt(fault.at, fault.what);
    }

    ColorTransformMatrix low{};
    const std::unique_ptr<GammaLut> table = std::make_unique<GammaLut>();
    const hidl_vec<double> miscValues{20.9, 0};

private:
    Result switchAladFor(int time) {
        const Result result = switchAlad(1);
        light(9000);
        seconds(time);
        return result;
    }
    std::string handleResult() {
        std::string answers;
        service.allocUserHandle(0, [&](Result result, uint64_t) { answers += number(result); });
        return answers;
    }
    std::string firstMatrix(uint64_t display) {
        std::string answers;
        service.getColorTransformMatrix(7, display, [&](Result r, const auto& m) { answers += number(r) + matrix(m); });
        return answers;
    }
    std::string bothMatrices(uint64_t display) {
        std::string answers;
        service.getColorTransformMatrix2(7, display, [&](Result r, const auto& first, const auto& last) {
            answers += number(r) + matrix(first) + matrix(last);
        });
        return answers;
    }
    std::string gammaTable() {
        std::string answers;
        service.getGlobalGammaLut(7, 0, [&](Result r, const auto& t) { answers += number(r) + samples(t); });
        return answers;
    }
    std::string deGammaTable() {
        std::string answers;
        service.getGlobalDeGammaLut(7, 0, [&](Result r, const auto& t) { answers += number(r) + samples(t); });
        return answers;
    }
    std::string miscFeature() {
        std::string answers;
        service.setMiscFeature(7, 0, 3, miscValues, [&](Result r, const auto&) { answers += number(r); });
        return answers;
    }
    std::string unreadFeature() {
        std::string answers;
        service.getMiscFeature(7, 0, 3, [&](Result r, const auto&) { answers += number(r); });
        return answers;
    }
};

TEST_F(FaultsTest, EveryCallOfTheComposerAndTheSensorsFailsOnce) {
    const Planned kNone{Fault::NONE, 0, false};
    const auto [composerCalls, sensorCalls] = runWith(kNone, kNone);
    EXPECT_GT(composerCalls, 30U);
    EXPECT_GE(sensorCalls, 8U);
    const std::pair<Fault, bool> kFaults[] = {{Fault::REFUSES, false},
                                              {Fault::SILENT, false},
                                              {Fault::UNREACHABLE, false},
                                              {Fault::UNREACHABLE, true},
                                              {Fault::DIES_AFTER_ANSWER, false}};
    for (const auto& [fault, lasting] : kFaults) {
        SCOPED_TRACE("fault " + number(static_cast<int>(fault)) + (lasting ? " lasting" : ""));
        for (size_t at = 1; at <= composerCalls; ++at) {
            SCOPED_TRACE("composer, call " + std::to_string(at));
            runWith({fault, at, lasting}, kNone);
            expectAllWell();
        }
        for (size_t at = 1; at <= sensorCalls; ++at) {
            SCOPED_TRACE("sensors, call " + std::to_string(at));
            runWith(kNone, {fault, at, lasting});
            expectAllWell();
        }
    }
}

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
