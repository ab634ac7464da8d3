// SPDX-License-Identifier: Apache-2.0
#include "tools/accuracy/Accuracy.h"

#include <algorithm>

namespace simulator {

Accuracy accuracyOf(const ServiceStates& states, const MeasuredPanel& panel, const Target& target,
                    const Limits& limits) {
    Accuracy accuracy{panel.file, target, panel.model.residual(), panel.model.isAdditive(), {}, {}, {}, {}};
    accuracy.figures = figuresOf(states.end, panel.model, target, predicted(states.end, panel.model));
    accuracy.verdicts = judge(accuracy.figures, limits);
    if (panel.native.candelas)
        accuracy.candelas = accuracy.figures.luminanceKept * panel.model.white()[1] * *panel.native.candelas;
    for (const ControlStates& control : states.controls)
        accuracy.controls.push_back({control.operation, temperaturesOf(control.levels, control.neutral, panel.model)});
    return accuracy;
}

bool isKept(const Accuracy& accuracy) {
    return std::all_of(accuracy.verdicts.begin(), accuracy.verdicts.end(),
                       [](const Verdict& verdict) { return verdict.isKept; });
}

}  // namespace simulator
