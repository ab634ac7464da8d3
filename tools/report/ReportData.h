// SPDX-License-Identifier: Apache-2.0
// What a report shows: one function a section, and one that gathers them all.
#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "simulator/Colorimetry.h"
#include "tools/accuracy/Accuracy.h"
#include "tools/check/Check.h"
#include "tools/light/LightTrace.h"
#include "tools/light/Replay.h"
#include "tools/report/ReportSession.h"

namespace simulator {

// A point of a curve in a chromaticity diagram.
struct CurvePoint {
    int value;  // what the curve runs over: nanometres, kelvin or a level
    Chromaticity xy;
};
using ColorCurve = std::vector<CurvePoint>;

// The Planckian locus over kelvin, closer where it bends.
ColorCurve planckianCurve();

// The colours of a panel: from the calibration and the driver, or else what the library takes for any panel.
struct PanelColors {
    Primaries primaries;
    Chromaticity white;                    // with nothing done to it
    std::vector<std::string> assumptions;  // one for each that is not the panel's own
};
PanelColors panelColors(const ConfigXmlParser& record, const std::optional<Chromaticity>& driverWhite);

struct StageWhite {
    const char* stage;
    std::optional<Chromaticity> xy;  // nothing for black and for what is not finite
    std::optional<double> kelvin;    // correlated colour temperature, where it has a meaning
};

// A colour as the target shows it, coded by the transfer function of sRGB and Display P3, 0 to 1; clipped to the
// target's gamut.
Vec3 codedColor(const Target& target, const Vec3& xyz);

struct ChromaticitySection {
    PanelColors panel;
    std::vector<StageWhite> whites;  // after each stage of colors
    // Where white goes over the levels of both colour temperatures, beginning from the calibrated white.
    ColorCurve unlimited, eyeCare;
};
// Whites and curves are empty where no display can be like the panel.
ChromaticitySection chromaticitySection(const ConfigXmlParser& record, PanelColors panel,
                                        const std::optional<ColorManager>& colors);

struct StageMatrix {
    const char* stage;
    implementation::TMat33<float> matrix;
};
// Each stage's matrix, the product and the final matrix.
std::vector<StageMatrix> stageMatrices(const ColorManager& colors);

struct LightSection {
    std::string name;               // of the trace
    std::vector<Decision> samples;  // their messages are below
    std::vector<CurveMessage> messages;
};
// The decisions and messages that follow from a trace. Of decisions that say the same only the first and last of a run
// are kept: between them nothing happens.
LightSection lightSection(const LightTrace& trace, const std::function<void(double)>& progress = {});

// A measured panel and what it is compared with.
struct PanelInput {
    std::filesystem::path measurement;
    Target target;
};

struct ReportInput {
    std::optional<std::filesystem::path> script;       // - is standard input; otherwise a short built-in session
    std::optional<std::filesystem::path> calibration;  // otherwise the sample phone's
    std::optional<std::filesystem::path> trace;        // of light; without it there is no timeline
    std::optional<PanelInput> panel;                   // without it there are no accuracy figures
    std::function<void(double)> progress;              // called with the share of the trace that is replayed, 0 to 1
};

struct Report {
    std::optional<Accuracy> accuracy;  // after the script; in standard mode after the built-in session
    std::string accuracyFault;         // why a panel has no figures, such as a stopped composer; otherwise empty
    std::string calibrationFile;       // its name
    CheckedCalibration calibration;
    ChromaticitySection chromaticity;
    std::string script;  // its name; empty for the built-in session
    SessionRecord session;
    std::vector<StageMatrix> matrices;  // none without a display
    std::optional<LightSection> light;
};

// Runs the session, and the trace on another phone. Throws std::runtime_error, "WHERE: what is wrong; what was
// expected", for what cannot be read or carried out.
Report gatherReport(const ReportInput& input);

}  // namespace simulator
