// SPDX-License-Identifier: Apache-2.0
// The accuracy of a display: its figures, the limits that they keep, and how far they can be trusted.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "tools/accuracy/Figures.h"
#include "tools/accuracy/Limits.h"
#include "tools/accuracy/ServiceStates.h"

namespace simulator {

// A panel's measurement and the model of it. Throws what readPanel and PanelModel throw.
struct MeasuredPanel {
    explicit MeasuredPanel(const std::filesystem::path& panelFile)
        : file(panelFile.string()), native(readPanel(panelFile)), model(native) {}

    std::string file;
    Measurement native;
    PanelModel model;
};

// Measured while the panel was driven as `dcsim patches` says.
struct DrivenMeasurement {
    std::string file;
    std::vector<Patch> coded;  // what was to be shown
    Measurement driven;
};

struct MeasuredFigure {
    std::string file;
    size_t patches;          // measured, of the coded ones
    size_t expected;         // coded patches
    ColorErrors difference;  // from the predicted values, both scaled to Y = 100 for white; delta E 2000
    size_t whites;
    ColorErrors whiteDrift;  // of the repeated whites from their mean, delta E 2000
    double driveDifference;  // the largest from the levels that the state drives the panel with, 0 to 1
    bool isInUnitOfPanel;    // both files state their unit in cd/m2; otherwise it is taken to be the same
};

struct ControlFigure {
    std::string operation;
    TemperaturesFigure temperatures;
};

// Of what is shown, predicted or measured, after the service has run. The levels of the controls are those of the
// simulated closed libraries.
struct Accuracy {
    std::string panel;        // its file
    std::string calibration;  // the file that the panel uses
    size_t failedCalls;       // of the composer in the session
    Target target;
    ColorErrors residual;            // of the panel's model, delta E 2000
    bool isAdditive;                 // the residual is small enough for the model
    std::optional<double> candelas;  // of shown white, cd/m2, if the files of all values state their unit
    Figures figures;
    Limits limits;
    std::vector<Verdict> verdicts;
    std::vector<ControlFigure> controls;     // always predicted
    std::optional<MeasuredFigure> measured;  // nothing if the figures are predicted
};

// With measured, its values take the place of the model's. Throws as figuresOf.
Accuracy accuracyOf(const ServiceStates& states, const MeasuredPanel& panel, const Target& target,
                    const Limits& limits = {}, const std::optional<DrivenMeasurement>& measured = {});

// Whether every limit is kept whose figure was measured.
bool isKept(const Accuracy& accuracy);

}  // namespace simulator
