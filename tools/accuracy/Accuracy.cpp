// SPDX-License-Identifier: Apache-2.0
#include "tools/accuracy/Accuracy.h"

#include <algorithm>
#include <stdexcept>

namespace simulator {

namespace {

// Y = 100 for white. Requires a measured white.
std::vector<MeasuredPatch> scaledToWhite(std::vector<MeasuredPatch> patches) {
    const double factor = 100 / meanXyz(patches, kFullWhite).value()[1];
    for (MeasuredPatch& patch : patches) patch.xyz = scaled(patch.xyz, factor);
    return patches;
}

MeasuredFigure measuredFigure(const DrivenMeasurement& measured, const std::vector<MeasuredPatch>& patches,
                              const DisplayState& state, const MeasuredPanel& panel, const Target& target) {
    std::vector<MeasuredPatch> expected = patches;
    for (MeasuredPatch& patch : expected) patch.xyz = panel.model.xyz(driveLevels(state, patch.rgb));
    const auto whites = std::count_if(patches.begin(), patches.end(),
                                      [](const MeasuredPatch& patch) { return patch.rgb == kFullWhite; });
    return {measured.file,
            patches.size(),
            measured.coded.size(),
            compare(scaledToWhite(patches), scaledToWhite(expected), whiteOf(target)),
            static_cast<size_t>(whites),
            whiteDrift(patches),
            driveDifference(drivenPatches(state, measured.coded), measured.driven),
            measured.driven.candelas && panel.native.candelas};
}

}  // namespace

Accuracy accuracyOf(const ServiceStates& states, const MeasuredPanel& panel, const Target& target, const Limits& limits,
                    const std::optional<DrivenMeasurement>& measurement) {
    Accuracy accuracy{panel.file,
                      states.calibration,
                      states.failedCalls,
                      target,
                      panel.model.residual(),
                      panel.model.isAdditive(),
                      {},
                      {},
                      limits,
                      {},
                      {},
                      {}};
    Shown shown = predicted(states.end, panel.model);
    std::vector<MeasuredPatch> patches;
    if (measurement) {
        patches = measuredPatches(measurement->coded, measurement->driven, panel.native);
        if (patches.empty())
            throw std::runtime_error(measurement->file + ": has no SAMPLE_ID of the list of patches; expected the " +
                                     "measurement of what dcsim patches wrote for that list");
        shown = measured(patches);
    }
    accuracy.figures = figuresOf(states.end, panel.model, target, shown);
    if (measurement) accuracy.measured = measuredFigure(*measurement, patches, states.end, panel, target);
    accuracy.verdicts = judge(accuracy.figures, limits);
    std::optional<double>& kept = accuracy.figures.luminanceKept;
    if (accuracy.measured && !accuracy.measured->isInUnitOfPanel) kept.reset();
    if (kept && panel.native.candelas) accuracy.candelas = *kept * panel.model.white()[1] * *panel.native.candelas;
    for (const ControlStates& control : states.controls)
        accuracy.controls.push_back({control.operation, temperaturesOf(control.levels, control.neutral, panel.model)});
    return accuracy;
}

bool isKept(const Accuracy& accuracy) {
    return std::all_of(accuracy.verdicts.begin(), accuracy.verdicts.end(),
                       [](const Verdict& verdict) { return verdict.isKept.value_or(true); });
}

}  // namespace simulator
