// SPDX-License-Identifier: Apache-2.0
// How right a display's picture is, in figures.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tools/accuracy/Shown.h"

namespace simulator {

struct WhiteFigure {
    Chromaticity xy;
    std::optional<double> kelvin;  // correlated colour temperature
    double duv;
    double deltaE;
};

struct GreyFigure {
    double level;  // coded, 0 to 1
    double deltaE;
    double deltaC;
    std::optional<double> gamma;       // from 10 to 90 %
    std::optional<double> gammaError;  // gamma less the target's
};

struct PatchFigure {
    std::string name;
    Vec3 target;  // XYZ, Y = 100 for the target's white
    Vec3 shown;   // XYZ, Y = 100 for the shown white
    double deltaE;
    bool isTargetClipped;  // to the target's gamut
    bool isPanelClipped;   // the panel cannot show the target's colour at the luminance of the shown white
};

struct CodesFigure {
    int falls;   // grey codes, of 256, that are darker than the one below
    int levels;  // distinct drive levels, rounded to codes
};

struct Figures {
    WhiteFigure white;
    std::optional<double> luminanceKept;  // shown white / native white; nothing if their units are not known
    std::optional<double> contrast;  // shown white / shown black; nothing if black is not measured or gives no light
    CodesFigure codes;
    std::vector<GreyFigure> greys;          // 33
    std::vector<PatchFigure> colorChecker;  // 24
    std::vector<PatchFigure> primaries;     // red, green, blue, cyan, magenta, yellow
    std::optional<double>
        coverageXy;  // of the target's gamut by the shown one, which the calibration narrows; in percent
    std::optional<double> coverageUv;  // the same in CIE 1976 u', v'
};

// The figures of what is shown. codes are always predicted. Lists have the patches that were measured; coverage is
// there if the primaries were. Throws std::runtime_error if white is not measured, or darker than 1 % of the panel's.
Figures figuresOf(const DisplayState& state, const PanelModel& panel, const Target& target, const Shown& shown);

// Delta E 2000 of the patches that the panel can show; nothing if there is none.
std::optional<ColorErrors> errorsOf(const std::vector<PatchFigure>& patches);

// White over the levels of a colour temperature control.
struct TemperatureFigure {
    int level;
    Chromaticity xy;
    std::optional<double> kelvin;
    double duv;
};
struct TemperaturesFigure {
    std::vector<TemperatureFigure> levels;
    std::optional<bool> isMonotone;       // temperatures only rise or only fall; nothing if a level has none
    std::optional<double> neutralDeltaE;  // of white at level 0 from white without the control
};
// states: the composer's at rising levels; neutral: without the control. Throws as figuresOf.
TemperaturesFigure temperaturesOf(const std::vector<std::pair<int, DisplayState>>& states, const DisplayState& neutral,
                                  const PanelModel& panel);

}  // namespace simulator
