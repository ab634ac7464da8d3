// SPDX-License-Identifier: Apache-2.0
// What the tone curve does at a light level, and the levels that it passes through.
#pragma once

#include <cstdint>

namespace vendor::kov::hardware::display_control::V1_0::implementation {

enum class CurveAction {
    NONE,
    ACTIVATE,    // switch the curve on and ramp it up to the light's level
    TRACK,       // ramp to the light's level
    DEACTIVATE,  // ramp down and switch the curve off
};

// Action for a mean light level in lux. A negative level is not valid: NONE.
CurveAction actionFor(bool curveActive, int32_t meanLux);

// The levels from first to last, one step at a time. Wider than a level, so that a ramp to the end of the int range
// terminates.
struct Ramp {
    int64_t first;
    int64_t last;
    int64_t step;  // 1 or -1; a ramp whose last is in the other direction is empty

    bool reaches(int64_t level) const { return step > 0 ? level <= last : level >= last; }
};

// From the level above from up to target; empty if target is not above.
Ramp rampUp(int32_t from, int32_t target);
// From the level next to from to target, up or down; empty if they are equal.
Ramp rampTo(int32_t from, int32_t target);
// From from down to target, both included; empty if target is above.
Ramp rampDown(int32_t from, int32_t target);

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
