// SPDX-License-Identifier: Apache-2.0
// The tone response curve of one channel of a panel.
#pragma once

#include <algorithm>
#include <vector>

namespace simulator {

// Drive level to linear light, both 0 to 1; 0 and 1 are fixed points. Monotone.
class ChannelCurve {
public:
    // levels: rising, from exactly 0 to exactly 1, at least two. The curve begins as the power 2.2.
    explicit ChannelCurve(const std::vector<double>& curveLevels) : levels(curveLevels), values(curveLevels) {}

    // The adjustable values: one for each level but the first and the last, the light there to the power of 1 / 2.2.
    size_t parameterCount() const { return values.size() - 2; }
    double parameter(size_t i) const { return values[i + 1]; }
    // To be called in order: a value that is below the one before it or above 1 is brought into that range.
    void setParameter(size_t i, double value) { values[i + 1] = std::clamp(value, values[i], 1.0); }

    double light(double level) const;
    // The lowest level with that light.
    double level(double light) const;

private:
    double interpolate(size_t segment, double level) const;
    double slope(size_t node) const;

    std::vector<double> levels;
    std::vector<double> values;  // at the levels, to the power of 1 / 2.2; never fall
};

}  // namespace simulator
