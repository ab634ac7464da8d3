// What the ambient light asks for: the filter, the thresholds and the ramps, without a thread.
#include "alad/LightFilter.h"

#include <gmock/gmock.h>

#include <tuple>
#include <vector>

#include "alad/ToneCurveRamp.h"

namespace vendor::kov::hardware::display_control::V1_0::implementation {

namespace {

constexpr int32_t kMin = INT32_MIN;
constexpr int32_t kMax = INT32_MAX;

TEST(LightFilterTest, EverySampleMovesTheMeanInItsWay) {
    const struct {
        const char* name;
        bool curveActive;
        std::vector<int32_t> samples, means;
    } kCases[] = {
        {"the ring holds five", false, {10, 20, 30, 40, 50, 60, 70, 80}, {10, 10, 13, 20, 30, 40, 50, 60}},
        {"one bright sample is an outlier", false, {300, 9000, 300, 300}, {300, 300, 300, 300}},
        {"two fill the ring, across its end too",
         false,
         {1, 1, 1, 1, 1, 9000, 9000, 1},
         {1, 1, 1, 1, 1, 1, 9000, 9000}},
        {"8000 is not bright, 8001 is", false, {300, 8001, 8000, 8001, 8001}, {300, 300, 2866, 5433, 8001}},
        {"two dim ones while off", false, {9000, 100, 100, 100}, {9000, 9000, 6033, 3066}},
        {"5000 is not dim, 4999 is", true, {9000, 5000, 4999, 5000, 4999, 4999}, {9000, 9000, 7666, 6333, 4999, 4999}},
        {"two dim ones while on", true, {9000, -4999, -5}, {9000, 9000, -5}},
        {"two bright ones while on", true, {6000, 9000, 9000}, {6000, 6000, 7000}},
        {"truncated toward zero", false, {-2, -1, -1}, {-2, -2, -1}},
        {"no overflow", true, {kMax, kMin, kMax, kMin, kMax}, {kMax, kMax, kMax, 715827882, 715827882}},
        {"none below either", false, {kMin, kMin, kMax, kMin, kMax}, {kMin, kMin, kMin, kMin, -715827883}}};
    for (const auto& c : kCases) {
        LightFilter filter;
        std::vector<int32_t> means;
        for (const int32_t lux : c.samples) means.push_back(filter.add(lux, c.curveActive));
        EXPECT_EQ(means, c.means) << c.name;
    }
}

TEST(ToneCurveRampTest, TheMeanDecidesWithAHysteresis) {
    const auto kNone = CurveAction::NONE, kOff = CurveAction::DEACTIVATE, kTrack = CurveAction::TRACK;
    const std::tuple<int32_t, CurveAction, CurveAction> kCases[] = {
        {-1, kNone, kNone},    {0, kNone, kOff},      {4999, kNone, kOff},
        {5000, kNone, kTrack}, {8000, kNone, kTrack}, {8001, CurveAction::ACTIVATE, kTrack}};
    for (const auto& [meanLux, whileOff, whileOn] : kCases) {
        EXPECT_EQ(actionFor(false, meanLux), whileOff) << meanLux;
        EXPECT_EQ(actionFor(true, meanLux), whileOn) << meanLux;
    }
}

TEST(ToneCurveRampTest, ARampPassesThroughEveryLevelAndEnds) {
    const struct {
        Ramp (*ramp)(int32_t from, int32_t target);
        int32_t from, target;
        std::vector<int64_t> levels;
    } kCases[] = {{rampUp, -2, 1, {-1, 0, 1}},
                  {rampUp, 5, 5, {}},
                  {rampUp, 5, 2, {}},
                  {rampUp, kMax - 1, kMax, {kMax}},
                  {rampUp, kMax, kMin, {}},
                  {rampTo, 4, 7, {5, 6, 7}},
                  {rampTo, 7, 4, {6, 5, 4}},
                  {rampTo, kMin, kMin, {}},
                  {rampTo, kMin + 1, kMin, {kMin}},
                  {rampDown, 5, 2, {5, 4, 3, 2}},
                  {rampDown, 2, 2, {2}},
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

}  // namespace

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
