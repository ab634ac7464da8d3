// SPDX-License-Identifier: Apache-2.0
// Data: the L*a*b* values (D50, 2 degree observer) published in 2005 by the maker of the chart for charts made before
// November 2014. From D50 to the white of the target they are adapted with the linear Bradford transform (ISO
// 15076-1, annex E), by lcms2. A patch outside the target's gamut is clipped channel by channel in linear RGB.
#include "tools/accuracy/ColorChecker.h"

#include <lcms2.h>

#include <algorithm>
#include <cmath>

namespace simulator {

namespace {

struct ChartLab {
    std::string_view name;
    cmsCIELab lab;
};

constexpr std::array<ChartLab, 24> kChart = {{
    {"dark skin", {37.986, 13.555, 14.059}},     {"light skin", {65.711, 18.130, 17.810}},
    {"blue sky", {49.927, -4.880, -21.925}},     {"foliage", {43.139, -13.095, 21.905}},
    {"blue flower", {55.112, 8.844, -25.399}},   {"bluish green", {70.719, -33.397, -0.199}},
    {"orange", {62.661, 36.067, 57.096}},        {"purplish blue", {40.020, 10.410, -45.964}},
    {"moderate red", {51.124, 48.239, 16.248}},  {"purple", {30.325, 22.976, -21.587}},
    {"yellow green", {72.532, -23.709, 57.255}}, {"orange yellow", {71.941, 19.363, 67.857}},
    {"blue", {28.778, 14.179, -50.297}},         {"green", {55.261, -38.342, 31.370}},
    {"red", {42.101, 53.378, 28.190}},           {"yellow", {81.733, 4.039, 79.819}},
    {"magenta", {51.935, 49.986, -14.574}},      {"cyan", {51.038, -28.631, -28.638}},
    {"white", {96.539, -0.425, 1.186}},          {"neutral 8", {81.257, -0.638, -0.335}},
    {"neutral 6.5", {66.766, -0.734, -0.504}},   {"neutral 5", {50.867, -0.153, -0.270}},
    {"neutral 3.5", {35.656, -0.421, -1.231}},   {"black", {20.461, -0.079, -0.973}},
}};

// X, Y, Z under the target's white, Y = 100 for white.
Vec3 adapted(const cmsCIELab& lab, const Target& target) {
    const Vec3 white = xyzOf(target.white);
    const cmsCIEXYZ illuminant = {white[0], white[1], white[2]};
    cmsCIEXYZ color;
    cmsLab2XYZ(cmsD50_XYZ(), &color, &lab);
    cmsAdaptToIlluminant(&color, cmsD50_XYZ(), &illuminant, &color);
    return {100 * color.X, 100 * color.Y, 100 * color.Z};
}

ChartPatch patchOf(const ChartLab& patch, const Target& target) {
    const Vec3 wanted = multiply(target.fromXyz, adapted(patch.lab, target));
    ChartPatch result{patch.name, {}, {}};
    for (size_t i = 0; i < 3; ++i) {
        const double linear = std::clamp(wanted[i], 0.0, 1.0);
        result.isClipped = result.isClipped || linear != wanted[i];
        result.rgb[i] = std::pow(linear, 1 / target.exponent);
    }
    result.xyz = xyzOf(target, result.rgb);
    return result;
}

}  // namespace

std::array<ChartPatch, 24> colorChecker(const Target& target) {
    std::array<ChartPatch, 24> patches;
    std::transform(kChart.begin(), kChart.end(), patches.begin(),
                   [&target](const ChartLab& patch) { return patchOf(patch, target); });
    return patches;
}

}  // namespace simulator
