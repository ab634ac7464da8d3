// SPDX-License-Identifier: Apache-2.0
// The intersection of two triangles by clipping one at each side of the other (Sutherland and Hodgman, "Reentrant
// polygon clipping", Commun. ACM 17 (1974), 32-42). The area of a polygon is half the sum of the cross products of
// neighbouring corners, positive if they go round counterclockwise.
#include "tools/accuracy/Gamut.h"

#include <cmath>
#include <cstddef>
#include <vector>

namespace simulator {

namespace {

using Polygon = std::vector<Point>;

double areaOf(const Polygon& polygon) {
    double twice = 0;
    for (std::size_t i = 0; i < polygon.size(); ++i) {
        const Point& a = polygon[i];
        const Point& b = polygon[(i + 1) % polygon.size()];
        twice += a.x * b.y - b.x * a.y;
    }
    return twice / 2;
}

// Positive to the left of the line from a to b.
double sideOf(const Point& a, const Point& b, const Point& p) {
    return (b.x - a.x) * (p.y - a.y) - (b.y - a.y) * (p.x - a.x);
}

// The part of the polygon to the left of the line from a to b.
Polygon clip(const Polygon& polygon, const Point& a, const Point& b) {
    Polygon inside;
    for (std::size_t i = 0; i < polygon.size(); ++i) {
        const Point& p = polygon[i];
        const Point& q = polygon[(i + 1) % polygon.size()];
        const double pSide = sideOf(a, b, p);
        const double qSide = sideOf(a, b, q);
        if (pSide >= 0) inside.push_back(p);
        if ((pSide >= 0) == (qSide >= 0)) continue;
        const double t = pSide / (pSide - qSide);
        inside.push_back({p.x + t * (q.x - p.x), p.y + t * (q.y - p.y)});
    }
    return inside;
}

}  // namespace

double coverage(const Triangle& gamut, const Triangle& target) {
    Polygon covered(gamut.begin(), gamut.end());
    for (std::size_t i = 0; i < 3; ++i) covered = clip(covered, target[i], target[(i + 1) % 3]);
    return std::abs(areaOf(covered)) / areaOf({target.begin(), target.end()});
}

}  // namespace simulator
