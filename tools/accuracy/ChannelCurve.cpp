// SPDX-License-Identifier: Apache-2.0
// light(l) = h(l)^2.2, where h is a monotone piecewise cubic through the values at the levels: Fritsch and Butland, "A
// method for constructing local monotone piecewise cubic interpolants", SIAM J. Sci. Stat. Comput. 5 (1984), 300-304.
// The power makes h nearly straight for a display, so that few levels suffice.
#include "tools/accuracy/ChannelCurve.h"

#include <algorithm>
#include <cmath>

namespace simulator {

namespace {

constexpr double kExponent = 2.2;
constexpr int kBisections = 52;  // bits of a double

}  // namespace

double ChannelCurve::slope(size_t node) const {
    const auto secant = [this](size_t i) { return (values[i + 1] - values[i]) / (levels[i + 1] - levels[i]); };
    if (node == 0) return secant(0);
    if (node == levels.size() - 1) return secant(node - 1);
    const double before = secant(node - 1);
    const double after = secant(node);
    if (before == 0 || after == 0) return 0;
    const double t = (levels[node] - levels[node - 1]) / (levels[node + 1] - levels[node - 1]);
    const double weight = (2 - t) / 3;  // of the secant before; the nearer neighbour has the greater one
    return 1 / (weight / before + (1 - weight) / after);
}

double ChannelCurve::interpolate(size_t segment, double level) const {
    const double width = levels[segment + 1] - levels[segment];
    const double t = (level - levels[segment]) / width;
    const double s = 1 - t;
    return values[segment] * s * s * (1 + 2 * t) + values[segment + 1] * t * t * (1 + 2 * s) +
           width * s * t * (slope(segment) * s - slope(segment + 1) * t);
}

double ChannelCurve::light(double level) const {
    const auto next = std::upper_bound(levels.begin() + 1, levels.end() - 1, level);
    return std::pow(interpolate(static_cast<size_t>(next - levels.begin()) - 1, level), kExponent);
}

double ChannelCurve::level(double light) const {
    const double value = std::pow(light, 1 / kExponent);
    const auto next = std::lower_bound(values.begin() + 1, values.end() - 1, value);
    const auto segment = static_cast<size_t>(next - values.begin()) - 1;
    double low = levels[segment];
    double high = levels[segment + 1];
    for (int i = 0; i < kBisections; ++i) {
        const double middle = (low + high) / 2;
        (interpolate(segment, middle) < value ? low : high) = middle;
    }
    return high;
}

}  // namespace simulator
