// SPDX-License-Identifier: Apache-2.0
// Gamuts as triangles in a chromaticity plane.
#pragma once

#include <array>

namespace simulator {

struct Point {
    double x, y;
};
using Triangle = std::array<Point, 3>;  // the primaries, in either direction

// area(gamut and target together) / area(target), 0 to 1. The target must have an area.
double coverage(const Triangle& gamut, const Triangle& target);

}  // namespace simulator
