// SPDX-License-Identifier: Apache-2.0
// The 24 patches of the ColorChecker chart.
#pragma once

#include <array>
#include <string_view>

#include "tools/accuracy/Target.h"

namespace simulator {

// Which colours they have.
constexpr const char* kChartData =
    "L*a*b* (D50) published in 2005 for charts made before November 2014, adapted to the target's white by linear "
    "Bradford";

struct ChartPatch {
    std::string_view name;
    Vec3 rgb;          // coded, 0 to 1: the colour that shows the patch on the target
    Vec3 xyz;          // of the target, Y = 100 for white
    bool isClipped{};  // the patch lies outside the target's gamut, rgb and xyz are clipped to it
};

std::array<ChartPatch, 24> colorChecker(const Target& target);

}  // namespace simulator
