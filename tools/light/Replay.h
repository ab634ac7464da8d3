// SPDX-License-Identifier: Apache-2.0
// Recorded light through the real service on virtual time.
#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "alad/LightFilter.h"
#include "alad/ToneCurveRamp.h"
#include "tools/light/LightTrace.h"

namespace simulator {

namespace alad = ::vendor::kov::hardware::display_control::V1_0::implementation;

// One message to the composer: a tone curve, or to drop it.
struct CurveMessage {
    std::chrono::milliseconds time;
    std::optional<int32_t> level;  // of the curve; nothing for the message that drops it
};

// What the worker made of one sample.
struct Decision {
    std::chrono::milliseconds time;  // when the sample was taken
    int32_t lux = 0;
    std::array<int32_t, alad::LightFilter::kSamples> ring{};  // the last five samples, after this one
    int32_t mean = 0;                                         // lux
    alad::CurveAction action = alad::CurveAction::NONE;
    bool fastReset = false;              // this sample and the one before filled the ring
    std::optional<int32_t> targetLevel;  // requested for the mean; nothing while the curve is off
    std::vector<CurveMessage> messages;
    std::optional<int32_t> composerLevel;  // of the curve that the composer holds after it; nothing: the curve is off

    // In words: "mean 9000 is above 8000: on".
    std::string reason() const;
};

struct ReplaySummary {
    size_t samples = 0;
    size_t activations = 0;
    size_t deactivations = 0;
    size_t messages = 0;
    int32_t highestLevel = 0;

    void add(const Decision& decision);
};

// Starts the service on a fresh copy of the sample phone, switches the ambient-light display on with the first sample's
// light and lets the trace pass, and ten seconds more; every decision goes to sink in its order. Times count from the
// first sample. It takes of the process what a Phone takes, and the log. Throws std::runtime_error when the service
// cannot be started.
void replay(const LightTrace& trace, const std::function<void(const Decision&)>& sink);

// How much of the trace has passed with a decision, 0 to 1.
double shareDone(const Decision& decision, const LightTrace& trace);

}  // namespace simulator
