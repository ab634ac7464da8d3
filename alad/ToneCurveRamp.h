// SPDX-License-Identifier: Apache-2.0
// Decides what the tone curve does at a light level, and which levels a ramp sends.
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

// The levels from first to last, one step at a time. 64 bits, because a ramp may end at either end of the int32_t
// range.
struct Ramp {
    int64_t first;
    int64_t last;
    int64_t step;  // 1 or -1; the ramp is empty if last is in the other direction

    bool reaches(int64_t level) const { return step > 0 ? level <= last : level >= last; }
};

// Levels from + 1 up to target; empty if target <= from.
Ramp rampUp(int32_t from, int32_t target);
// Levels from + 1 up to target or from - 1 down to target; empty if target == from.
Ramp rampTo(int32_t from, int32_t target);
// Levels from down to target, both included; empty if target > from.
Ramp rampDown(int32_t from, int32_t target);

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
