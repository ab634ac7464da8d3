// SPDX-License-Identifier: Apache-2.0
#include "tools/report/ReportData.h"

#include <platform/Numbers.h>

#include <algorithm>
#include <cmath>
#include <sstream>
#include <stdexcept>

#include "calibration/PanelTable.h"
#include "service/DefaultPanel.h"
#include "simulator/PhoneFiles.h"
#include "simulator/closed/EyeCare.h"
#include "simulator/closed/UnlimitedColorTemperature.h"
#include "tools/session/Command.h"
#include "tools/session/DataFolder.h"
#include "tools/text/Text.h"

namespace simulator {

namespace {

namespace fs = std::filesystem;
using implementation::kDefaultWhitePoint;

constexpr const char* kOwnSession = R"(init
setStandardMode 0          # the panel's calibration
setUnlimitedCT 0 -80       # warm
setUnlimitedCT 0 80        # cold
setUnlimitedCT 0 0
setEyeCareCT 0 70          # eye care
setEyeCareCT 0 0
setEnhanceScreenMode 0     # the panel's native colour
setSmartEnvironmentMode 0  # the white that the driver reports, brought to D65
setStandardMode 0          # an evening's setting, which stays
setUnlimitedCT 0 -40
setEyeCareCT 0 40
)";

Mat3 toMat3(const float* elements) {
    Mat3 result{};
    std::copy_n(elements, result.size(), result.begin());
    return result;
}

// What a display with this matrix from linear RGB to XYZ shows for linear RGB; a channel below 0 has no light. Nothing
// for black and for what is not finite.
std::optional<Chromaticity> shownColor(const Mat3& toXyz, Vec3 rgb) {
    for (double& channel : rgb) channel = std::max(channel, 0.0);
    const Vec3 xyz = multiply(toXyz, rgb);
    const double sum = xyz[0] + xyz[1] + xyz[2];
    return std::isfinite(sum) && sum > 0 ? std::optional(chromaticityOf(xyz)) : std::nullopt;
}

StageWhite stageWhite(const char* stage, const Mat3& toXyz, const Vec3& rgb) {
    const auto point = shownColor(toXyz, rgb);
    return {stage, point, point ? correlatedColorTemperature(*point) : std::nullopt};
}

std::vector<StageWhite> stageWhites(const Mat3& toXyz, const ColorManager& colors) {
    const Vec3 calibrated = multiply(toMat3(colors.wpcCtm.data()), multiply(toMat3(colors.ccmCtm.data()), kFullWhite));
    const Vec3 unlimited = multiply(toMat3(colors.unlimitedCtm.data()), calibrated);
    return {stageWhite("native panel", toXyz, kFullWhite),
            stageWhite("after colour correction and white point", toXyz, calibrated),
            stageWhite("after unlimited colour temperature", toXyz, unlimited),
            stageWhite("after eye care", toXyz, multiply(toMat3(colors.eyeCareCtm.data()), unlimited))};
}

// White of the standard mode: the calibration's two matrices, the identity for one that the file does not give.
Vec3 calibratedWhite(const ConfigXmlParser& record) {
    Vec3 white = kFullWhite;
    if (record.hasCtmCcm) white = multiply(toMat3(record.ctmCcm), white);
    if (record.hasCtmWpc) white = multiply(toMat3(record.ctmWpc), white);
    return white;
}

// Where white goes over the levels of a control; empty if one of them has no matrix.
template <typename MatrixOf>
ColorCurve curveOver(int first, int last, const Vec3& white, const Mat3& toXyz, MatrixOf matrixOf) {
    ColorCurve curve;
    for (int level = first; level <= last; ++level) {
        const std::optional<Mat3> matrix = matrixOf(level);
        if (!matrix) return {};
        if (const auto xy = shownColor(toXyz, multiply(*matrix, white))) curve.push_back({level, *xy});
    }
    return curve;
}

ColorCurve unlimitedCurve(const ConfigXmlParser& record, const Mat3& toXyz) {
    const EndPoints ends = record.hasUnlimitedCT ? EndPoints{record.unlimitedWarm, record.unlimitedCold}
                                                 : EndPoints{ColorManager::kDefaultWarm, ColorManager::kDefaultCold};
    const auto matrixOf = [&ends](int level) -> std::optional<Mat3> {
        const auto gains = unlimitedGains(ends, level);
        if (!gains) return std::nullopt;
        return Mat3{(*gains)[0], 0, 0, 0, (*gains)[1], 0, 0, 0, (*gains)[2]};
    };
    return curveOver(kUnlimitedWarmest, kUnlimitedColdest, calibratedWhite(record), toXyz, matrixOf);
}

ColorCurve eyeCareCurve(const ConfigXmlParser& record, const Mat3& toXyz) {
    if (!record.hasEyeCare) return {};
    const EyeCareParams params{{std::begin(record.eyeCareCoeffs), std::end(record.eyeCareCoeffs)},
                               platform::toInt32(record.eyeCareMaxCCT),
                               platform::toInt32(record.eyeCareMinCCT)};
    const auto matrixOf = [&params](int level) { return eyeCareMatrix(params, level); };
    return curveOver(kEyeCareWeakest, kEyeCareStrongest, calibratedWhite(record), toXyz, matrixOf);
}

// The calibration file that the sample phone's panel has.
fs::path sampleCalibration() {
    const PhoneFiles sample = PhoneFiles::at(dataFolder() / "phone");
    return sample.pathOf(implementation::identifyPanel().calibFile);
}

// The file's primaries, or the library's built-in ones.
Primaries primariesOf(const ConfigXmlParser& record) {
    const float* const x = record.hasWpcParam ? record.wpcParam : kDefaultWhitePoint.params;
    const float* const y = x + 3;
    return {{x[0], y[0]}, {x[1], y[1]}, {x[2], y[2]}};
}

// Shown in standard mode when there is no script: the built-in session leaves an evening's setting.
void addAccuracy(const std::optional<ScriptFile>& script, const ReportInput& input, Report& report) {
    const MeasuredPanel panel(input.panel->measurement);
    ServiceRun run;
    if (script) run.script = &*script;
    run.calibration = input.calibration;
    try {
        report.accuracy = accuracyOf(statesOf(run), panel, input.panel->target);
        report.accuracy->panel = input.panel->measurement.filename().string();
    } catch (const ScriptError&) {
        throw;
    } catch (const std::runtime_error& error) {
        report.accuracyFault = error.what();
    }
}

}  // namespace

ColorCurve planckianCurve() {
    constexpr int kFirst = static_cast<int>(kLocusMinKelvin);
    ColorCurve curve = {{kFirst, *planckianLocus(kFirst)}};
    for (int kelvin = 2000; kelvin <= kLocusMaxKelvin; kelvin += kelvin < 4000 ? 100 : kelvin < 10'000 ? 250 : 2500)
        curve.push_back({kelvin, *planckianLocus(kelvin)});
    return curve;
}

PanelColors panelColors(const ConfigXmlParser& record, const std::optional<Chromaticity>& driverWhite) {
    PanelColors panel{primariesOf(record),
                      driverWhite.value_or(Chromaticity{kDefaultWhitePoint.whiteX, kDefaultWhitePoint.whiteY}),
                      {}};
    if (!record.hasWpcParam)
        panel.assumptions.emplace_back(
            "The file gives no primaries (WPCParam): the library's built-in ones are assumed.");
    if (!driverWhite)
        panel.assumptions.emplace_back("The driver reports no white point: the library's built-in one is assumed.");
    return panel;
}

Vec3 codedColor(const Target& target, const Vec3& xyz) {
    Vec3 color = multiply(target.fromXyz, xyz);
    for (double& channel : color) channel = linearToSrgb(std::clamp(channel, 0.0, 1.0));
    return color;
}

ChromaticitySection chromaticitySection(const ConfigXmlParser& record, PanelColors panel,
                                        const std::optional<ColorManager>& colors) {
    ChromaticitySection section{std::move(panel), {}, {}, {}};
    const auto toXyz = rgbToXyz(section.panel.primaries, section.panel.white);
    if (!toXyz) {
        section.panel.assumptions.emplace_back(
            "No display has these primaries and this white: no colour can be computed.");
        return section;
    }
    if (colors) section.whites = stageWhites(*toXyz, *colors);
    section.unlimited = unlimitedCurve(record, *toXyz);
    section.eyeCare = eyeCareCurve(record, *toXyz);
    return section;
}

std::vector<StageMatrix> stageMatrices(const ColorManager& colors) {
    return {{"colour correction", colors.ccmCtm},
            {"white point", colors.wpcCtm},
            {"unlimited colour temperature", colors.unlimitedCtm},
            {"eye care", colors.eyeCareCtm},
            {"product", colors.composedCtm()},
            {"final: product divided by its largest output", colors.finalCtm()}};
}

LightSection lightSection(const LightTrace& trace, const std::function<void(double)>& progress) {
    LightSection section;
    auto& samples = section.samples;
    bool endsRun = false;  // the latest sample says the same as the one before it
    const auto saysTheSame = [](const Decision& a, const Decision& b) {
        return a.lux == b.lux && a.mean == b.mean && a.composerLevel == b.composerLevel;
    };
    replay(trace, [&](const Decision& decision) {
        if (progress) progress(shareDone(decision, trace));
        section.messages.insert(section.messages.end(), decision.messages.begin(), decision.messages.end());
        const bool repeats = !samples.empty() && saysTheSame(samples.back(), decision);
        if (repeats && endsRun) samples.pop_back();
        endsRun = repeats;
        samples.push_back(decision);
        samples.back().messages.clear();
    });
    return section;
}

Report gatherReport(const ReportInput& input) {
    Report report;
    std::optional<LightTrace> trace;
    if (input.trace) trace = readLightTrace(*input.trace);
    const fs::path file = input.calibration ? *input.calibration : sampleCalibration();
    report.calibrationFile = file.filename().string();
    requireFile(file, "a calibration file");
    std::optional<ScriptFile> script;
    if (input.script) {
        script.emplace(*input.script);
        report.script = input.script->filename().string();
    }
    if (input.panel) addAccuracy(script, input, report);
    std::istringstream own(kOwnSession);
    report.session = recordSession(script ? *script : ScriptFile(own, "built-in session"), input.calibration);
    // The sample phone's driver reports the white of its own panel, another calibration may be of another panel.
    report.calibration = checkCalibration(file, input.calibration ? std::nullopt : report.session.driverWhite);
    const ConfigXmlParser& record = *report.calibration.record;
    const auto& colors = report.session.colors;
    report.chromaticity = chromaticitySection(record, panelColors(record, report.session.driverWhite), colors);
    if (colors) report.matrices = stageMatrices(*colors);
    if (trace) {
        report.light = lightSection(*trace, input.progress);
        report.light->name = input.trace->filename().string();
    }
    return report;
}

}  // namespace simulator
