// What the tone curve is to do for a light level, and the levels it passes through.
#pragma once

#include <cstdint>

namespace vendor::kov::hardware::display_control::V1_0::implementation {

enum class CurveAction {
    NONE,
    ACTIVATE,    // switch the curve on and bring it up to the light's level
    TRACK,       // bring the level in step with the light
    DEACTIVATE,  // bring the level down and switch the curve off
};

// For a mean light level in lux; a negative one is no light level.
CurveAction actionFor(bool curveActive, int32_t meanLux);

// Levels one after another, from first on, by one up or down, to last. Wider than a level, so that a ramp at an end of
// the int range ends.
struct Ramp {
    int64_t first;
    int64_t last;
    int64_t step;  // 1 or -1; a ramp whose last lies against it has no level

    bool reaches(int64_t level) const { return step > 0 ? level <= last : level >= last; }
};

// From the level after from to target, up only.
Ramp rampUp(int32_t from, int32_t target);
// From the level after from to target, up or down; none when they are the same.
Ramp rampTo(int32_t from, int32_t target);
// From from down to target, both included.
Ramp rampDown(int32_t from, int32_t target);

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
