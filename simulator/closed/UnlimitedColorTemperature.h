// SPDX-License-Identifier: Apache-2.0
// Model of the closed library of the unlimited colour temperature (closed/vo_display.h).
//
// A level L in [-100, 100] runs from the warm end point (-100) over neutral (0) to the cold one (100). An end point is
// the colour 0xRRGGBB that white is shown as at that end. With e its channels decoded to linear light by the sRGB
// transfer function (IEC 61966-2-1) and t = |L| / 100, a channel's gain is
//
//     1 + t (e - 1)
//
// and the three are divided by the largest of them: light is linear, so equal steps of the level take equal steps of
// it away, and the colour keeps as much luminance as the panel can give it. The phone's library may bend the
// way between the same end points differently.
#pragma once

#include <closed/vo_display.h>

#include <optional>

#include "simulator/Colorimetry.h"

namespace simulator {

constexpr int kUnlimitedWarmest = -100;  // level
constexpr int kUnlimitedColdest = 100;   // level

// What setParams and getUnlimitedCTParams answer besides 0: then set has kept the end points that it had, and get has
// written nothing.
constexpr int kUnlimitedNotConfigured = -1;  // get: no end points were set
constexpr int kUnlimitedBadLevel = -2;       // get: below kUnlimitedWarmest or above kUnlimitedColdest
constexpr int kUnlimitedBadColor = -3;       // set: an end point is not in 0x000000 to 0xFFFFFF

struct EndPoints {
    int warm, cold;  // colours 0xRRGGBB
};

// Whether both are within 0x000000 to 0xFFFFFF.
bool areColors(const EndPoints& endPoints);

// The red, green and blue gain of a level, each in [0, 1], the largest 1; all 1 at level 0. A gain of 0 occurs only at
// the far end of a range whose end point has a channel without light. A grey end point gives 1, 1, 1 at every level,
// and so does black, the darkest grey (at its very end, where the formula reads 0 / 0, this is the limit).
// Nothing if the level is outside its range or an end point is not a colour.
std::optional<Vec3> unlimitedGains(const EndPoints& endPoints, int level);

}  // namespace simulator
