// SPDX-License-Identifier: Apache-2.0
#include "tools/light/Replay.h"

#include <platform/Answer.h>

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "simulator/Phone.h"
#include "tools/session/DataFolder.h"
#include "tools/session/ServedLibrary.h"

namespace simulator {

namespace {

using alad::CurveAction;
using std::chrono::milliseconds;

constexpr milliseconds kAfterTrace{10'000};

// Builds the decisions from the worker's samples, its requests for a level and the composer's calls. The curve is on
// while the composer holds one.
class Recorder {
public:
    explicit Recorder(const std::function<void(const Decision&)>& sink) : report(sink) {}

    // The worker has taken a sample.
    void sampled(int32_t mean, int32_t lux) {
        finish();
        decision = Decision{};
        decision->time = now();
        decision->lux = lux;
        const bool curveActive = composerLevel.has_value();
        decision->fastReset = previousLux && alad::isFastReset(lux, *previousLux, curveActive);
        filter.add(lux, curveActive);
        decision->ring = filter.luxSamples;
        decision->mean = mean;
        decision->action = alad::actionFor(curveActive, mean);
        previousLux = lux;
    }

    // The worker has requested the level for a mean.
    void targeted(std::optional<int> level) {
        if (decision) decision->targetLevel = level;
    }

    // The composer has received a message about the tone curve.
    void received(const ComposerCall& call) {
        if (*call.enable == 0) composerLevel.reset();
        if (const auto level = toneCurveLevelOf(call)) composerLevel = *level;
        if (decision) decision->messages.push_back({now(), composerLevel});
    }

    // Reports the decision that is complete now that nothing more follows from its sample.
    void finish() {
        if (!decision) return;
        decision->composerLevel = composerLevel;
        report(*decision);
        decision.reset();
    }

private:
    static milliseconds now() { return std::chrono::duration_cast<milliseconds>(platform::clock().now()); }

    const std::function<void(const Decision&)>& report;
    alad::LightFilter filter;
    std::optional<int32_t> previousLux;
    std::optional<int32_t> composerLevel;
    std::optional<Decision> decision;
};

}  // namespace

std::string Decision::reason() const {
    const std::string light = "mean " + std::to_string(mean);
    const std::string dim = std::to_string(alad::kDimLux);
    const std::string bright = std::to_string(alad::kBrightLux);
    std::string text;
    switch (action) {
        case CurveAction::ACTIVATE:
            text = light + " is above " + bright + ": on";
            break;
        case CurveAction::DEACTIVATE:
            text = light + " is below " + dim + ": off";
            break;
        case CurveAction::TRACK:
            text = light + " is not below " + dim + ": stays on, level " + std::to_string(*targetLevel);
            break;
        case CurveAction::NONE:
            text = mean < 0 ? light + " is not a light level" : light + " is not above " + bright + ": stays off";
            break;
    }
    if (fastReset)
        text +=
            lux > alad::kBrightLux ? "; two samples in a row above " + bright : "; two samples in a row below " + dim;
    return text;
}

void ReplaySummary::add(const Decision& decision) {
    ++samples;
    if (decision.action == CurveAction::ACTIVATE) ++activations;
    if (decision.action == CurveAction::DEACTIVATE) ++deactivations;
    messages += decision.messages.size();
    for (const CurveMessage& message : decision.messages)
        highestLevel = std::max(highestLevel, message.level.value_or(0));
}

void replay(const LightTrace& trace, const std::function<void(const Decision&)>& sink) {
    Recorder recorder(sink);
    Phone phone(Phone::Start::SAMPLE, dataFolder() / "phone");
    phone.observe([&recorder](const Event& event) {
        const auto* const call = std::get_if<ComposerCall>(&event.what);
        if (call != nullptr && call->operation == ComposerOperation::SET_ALAD_PARAMS) recorder.received(*call);
        const auto* const closed = std::get_if<ClosedCall>(&event.what);
        if (closed != nullptr && closed->function == ClosedFunction::GET_AGTM_LEVEL) recorder.targeted(closed->result);
        if (const auto* const sample = std::get_if<LightSample>(&event.what))
            recorder.sampled(sample->mean, sample->lux);
    });
    ServedLibrary service;
    phone.sensors().light(trace.front().lux);
    constexpr uint64_t kHandle = 1;
    if (service.library().init() != 0) throw std::runtime_error("the service could not be started");
    using display_control::Result;
    if (service.client().setAlad(kHandle, 0, 1).withDefault(Result::FAILED) != Result::OK)
        throw std::runtime_error("the ambient-light display could not be switched on");

    const milliseconds start = trace.front().time;
    milliseconds passed{0};
    for (const TracePoint& sample : trace) {
        phone.clock().advance(sample.time - start - passed);
        passed = sample.time - start;
        phone.sensors().light(sample.lux);
    }
    phone.clock().advance(kAfterTrace);
    recorder.finish();
    platform::dropAnswer(service.client().setAlad(kHandle, 0, 0));
}

double shareDone(const Decision& decision, const LightTrace& trace) {
    const std::chrono::duration<double> whole = trace.back().time - trace.front().time;
    return decision.time < whole ? decision.time / whole : 1;
}

}  // namespace simulator
