// SPDX-License-Identifier: Apache-2.0
#include "tools/accuracy/Shown.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>

#include "tools/accuracy/ColorChecker.h"
#include "tools/accuracy/Colorimetry.h"

namespace simulator {

namespace {

std::map<std::string, Vec3> xyzById(const std::vector<MeasuredPatch>& patches) {
    std::map<std::string, Vec3> byId;
    for (const MeasuredPatch& patch : patches) byId[patch.id] = patch.xyz;
    return byId;
}

}  // namespace

Shown predicted(const DisplayState& state, const PanelModel& panel) {
    return [&state, &panel](const Vec3& rgb) { return panel.xyz(driveLevels(state, rgb)); };
}

std::vector<MeasuredPatch> measuredPatches(const std::vector<Patch>& coded, const Measurement& driven,
                                           const Measurement& native) {
    const double unit = driven.candelas && native.candelas ? *driven.candelas / *native.candelas : 1;
    const std::map<std::string, Vec3> byId = xyzById(driven.patches);
    std::vector<MeasuredPatch> patches;
    for (const Patch& patch : coded) {
        const auto found = byId.find(patch.id);
        if (found == byId.end()) continue;
        patches.push_back({patch, scaled(found->second, unit)});
    }
    return patches;
}

Shown measured(std::vector<MeasuredPatch> coded) {
    return [coded = std::move(coded)](const Vec3& rgb) { return meanXyz(coded, rgb); };
}

std::vector<Patch> standardPatches(const Target& target) {
    std::vector<Patch> patches;
    patches.push_back({"white-1", kFullWhite});
    for (size_t i = 0; i < kGreys; ++i) patches.push_back({"grey-" + std::to_string(i), grey(i)});
    patches.push_back({"white-2", kFullWhite});
    for (const auto& [name, rgb] : kPrimaryColors) patches.push_back({name, rgb});
    const auto chart = colorChecker(target);
    for (size_t i = 0; i < chart.size(); ++i) patches.push_back({"chart-" + std::to_string(i + 1), chart[i].rgb});
    patches.push_back({"white-3", kFullWhite});
    return patches;
}

std::vector<Patch> drivenPatches(const DisplayState& state, std::vector<Patch> patches) {
    for (Patch& patch : patches) patch.rgb = driveLevels(state, patch.rgb);
    return patches;
}

double driveDifference(const std::vector<Patch>& driven, const Measurement& measured) {
    std::map<std::string, Vec3> levels;
    for (const Patch& patch : driven) levels[patch.id] = patch.rgb;
    double largest = 0;
    for (const MeasuredPatch& patch : measured.patches) {
        const auto found = levels.find(patch.id);
        if (found == levels.end()) continue;
        for (size_t i = 0; i < 3; ++i) largest = std::max(largest, std::abs(patch.rgb[i] - found->second[i]));
    }
    return largest;
}

ColorErrors compare(const std::vector<MeasuredPatch>& a, const std::vector<MeasuredPatch>& b, const Vec3& white) {
    const std::map<std::string, Vec3> byId = xyzById(b);
    std::vector<double> errors;
    for (const MeasuredPatch& patch : a) {
        const auto found = byId.find(patch.id);
        if (found != byId.end()) errors.push_back(deltaE2000(patch.xyz, found->second, white));
    }
    return summaryOf(errors);
}

ColorErrors whiteDrift(const std::vector<MeasuredPatch>& coded) {
    const auto mean = meanXyz(coded, kFullWhite);
    std::vector<double> errors;
    for (const MeasuredPatch& patch : coded) {
        if (patch.rgb == kFullWhite) errors.push_back(deltaE2000(patch.xyz, *mean, *mean));
    }
    return summaryOf(errors);
}

}  // namespace simulator
