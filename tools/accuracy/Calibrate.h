// SPDX-License-Identifier: Apache-2.0
// From a panel's model to its calibration.
#pragma once

#include <string>
#include <vector>

#include "tools/accuracy/PanelModel.h"
#include "tools/accuracy/Target.h"

namespace simulator {

constexpr size_t kGammaEntries = 4096;

struct PanelCalibration {
    // Of red, green and blue on linear RGB, the largest 1: the panel's white becomes the target's.
    Vec3 gains;
    // 3x3 by rows on linear RGB, applied before the gains; keeps white.
    Mat3 colorCorrection;
    // kGammaEntries; entry i is the drive level, 0 to 1, for the linear level i / 4096.
    std::vector<double> gamma;
    // Delta E 2000 of the patches that the gains and the matrix were fitted to, white first, and of the others.
    std::vector<double> fitted;
    std::vector<double> keptOut;
    size_t outOfGamut;  // patches that the panel cannot show, in neither list
};

// The calibration that brings a panel behind a composer, which decodes with kTargetExponent, closest to the target.
// The same result on every run. Differences are relative to the target's white, both whites scaled to Y = 100.
PanelCalibration calibrate(const PanelModel& panel, const Target& target);

// A sentence if white could not be brought within kWhiteLimit of the target's.
constexpr double kWhiteLimit = 0.5;  // delta E 2000
std::vector<std::string> warningsOf(const PanelCalibration& calibration);

}  // namespace simulator
