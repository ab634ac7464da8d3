// SPDX-License-Identifier: Apache-2.0
// Ramps at the ends of the int range, which no library's levels reach in a session.
#include "alad/ToneCurveRamp.h"

#include <gtest/gtest.h>

#include <vector>

namespace vendor::kov::hardware::display_control::V1_0::implementation {

TEST(ToneCurveRamp, PassesThroughEveryLevelAndEnds) {
    constexpr int32_t kMin = INT32_MIN;
    constexpr int32_t kMax = INT32_MAX;
    const struct {
        Ramp (*ramp)(int32_t from, int32_t target);
        int32_t from, target;
        std::vector<int64_t> levels;
    } kCases[] = {{rampUp, -2, 1, {-1, 0, 1}},
                  {rampUp, kMax - 1, kMax, {kMax}},
                  {rampUp, kMax, kMin, {}},
                  {rampTo, kMin, kMin, {}},
                  {rampTo, kMin + 1, kMin, {kMin}},
                  {rampDown, 1, 2, {}},
                  {rampDown, kMin + 1, kMin, {kMin + 1, kMin}},
                  {rampDown, kMin, kMax, {}}};
    for (const auto& c : kCases) {
        const Ramp ramp = c.ramp(c.from, c.target);
        std::vector<int64_t> levels;
        for (int64_t at = ramp.first; ramp.reaches(at) && levels.size() < 9; at += ramp.step) levels.push_back(at);
        EXPECT_EQ(levels, c.levels) << c.from << " to " << c.target;
    }
}

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
