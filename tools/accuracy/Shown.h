// SPDX-License-Identifier: Apache-2.0
// What a display shows for coded colours: predicted from a panel's model, or measured.
#pragma once

#include <array>
#include <functional>
#include <optional>
#include <vector>

#include "tools/accuracy/Measurement.h"
#include "tools/accuracy/PanelModel.h"
#include "tools/accuracy/Target.h"
#include "tools/picture/DisplayPipeline.h"

namespace simulator {

struct NamedColor {
    const char* name;
    Vec3 rgb;
};
constexpr std::array<NamedColor, 6> kPrimaryColors = {{
    {"red", {1, 0, 0}},
    {"green", {0, 1, 0}},
    {"blue", {0, 0, 1}},
    {"cyan", {0, 1, 1}},
    {"magenta", {1, 0, 1}},
    {"yellow", {1, 1, 0}},
}};

constexpr size_t kGreys = 33;
constexpr Vec3 grey(size_t i) {
    const double level = static_cast<double>(i) / (kGreys - 1);
    return {level, level, level};
}

// XYZ for a coded colour, in the unit of the native panel's measurement; nothing for a colour that was not measured.
using Shown = std::function<std::optional<Vec3>(const Vec3& rgb)>;

// By a panel behind a composer in that state. Both must outlive the result.
Shown predicted(const DisplayState& state, const PanelModel& panel);

// The coded patches with the values measured for their driven colours, matched by SAMPLE_ID; others are left out. The
// values are in the unit of the native panel's measurement if both files state theirs in cd/m2.
std::vector<MeasuredPatch> measuredPatches(const std::vector<Patch>& coded, const Measurement& driven,
                                           const Measurement& native);

// The mean of the patches with that colour.
Shown measured(std::vector<MeasuredPatch> coded);

// The patches to measure a display with, coded: white at the beginning, in the middle and at the end, the 33 greys,
// primaries and secondaries, and the ColorChecker for that target.
std::vector<Patch> standardPatches(const Target& target);

// What drives the panel for each patch.
std::vector<Patch> drivenPatches(const DisplayState& state, std::vector<Patch> patches);

// The largest difference between the levels that patches are to be driven with and those that were measured.
double driveDifference(const std::vector<Patch>& driven, const Measurement& measured);

// Delta E 2000 of two measurements of the same patches, matched by SAMPLE_ID, relative to that white. Values are
// compared as they are. Patches of only one of them are left out.
ColorErrors compare(const std::vector<MeasuredPatch>& a, const std::vector<MeasuredPatch>& b, const Vec3& white);

// Delta E 2000 of the repeated whites from their mean.
ColorErrors whiteDrift(const std::vector<MeasuredPatch>& coded);

}  // namespace simulator
