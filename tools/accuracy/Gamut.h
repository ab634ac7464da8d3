// SPDX-License-Identifier: Apache-2.0
// Gamuts as triangles in a chromaticity plane.
#pragma once

#include <array>

namespace simulator {

struct Point {
    double x, y;
};
using Triangle = std::array<Point, 3>;  // red, green, blue

// area(intersection of both) / area(target), 0 to 1. The target's primaries go round counterclockwise.
double coverage(const Triangle& gamut, const Triangle& target);

}  // namespace simulator
