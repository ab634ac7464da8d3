// SPDX-License-Identifier: Apache-2.0
#include "tools/accuracy/AccuracyTable.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

#include "tools/accuracy/ColorChecker.h"
#include "tools/text/Text.h"

namespace simulator {

namespace {

constexpr size_t kWorst = 5;
constexpr double kDriveRounding = 0.003;  // less than a code of 256; instruments' programs may round
constexpr double kSteadyWhite = 2;        // delta E 2000 of repeated whites
constexpr int kLevelStep = 25;            // of the levels of a control that are shown

template <typename... Values>
std::string format(const char* form, Values... values) {
    std::array<char, 160> text{};
    snprintf(text.data(), text.size(), form, values...);
    return text.data();
}

std::string padded(const std::string& text, size_t width) {
    return text + std::string(width - std::min(width, text.size()), ' ');
}

std::string rightAligned(const std::string& text, size_t width) {
    return std::string(width - std::min(width, text.size()), ' ') + text;
}

std::string kelvinText(const std::optional<double>& kelvin) {
    return kelvin ? format("%.0f K", *kelvin) : "none";
}

// Makes the rows in their order.
class Rows {
public:
    explicit Rows(const Accuracy& shown) : accuracy(shown) {}

    void report(const std::string& figure, const std::string& value) { rows.push_back({figure, value, "", {}}); }
    void reportErrors(const std::string& figure, const ColorErrors& errors) {
        report(figure + ", mean dE2000", format("%.2f", errors.mean));
        report(figure + ", largest dE2000", format("%.2f", errors.largest));
    }
    // The verdict on that figure, if there is one.
    void judge(const std::string& figure, int decimals, const char* unit = "") {
        for (const Verdict& verdict : accuracy.verdicts) {
            if (verdict.figure != figure) continue;
            const std::string value = verdict.value    ? format("%.*f", decimals, *verdict.value) + unit
                                      : verdict.isKept ? "no patch counts"
                                                       : "not measured";
            rows.push_back({figure, value, format(verdict.isLeast ? "at least %g" : "at most %g", verdict.limit) + unit,
                            verdict.isKept});
        }
    }

    std::vector<AccuracyRow> rows;

private:
    const Accuracy& accuracy;
};

void addGreys(Rows& rows, const std::vector<GreyFigure>& greys) {
    std::vector<double> errors;
    std::vector<double> gammas;
    for (const GreyFigure& grey : greys) {
        errors.push_back(grey.deltaE);
        if (grey.gamma) gammas.push_back(*grey.gamma);
    }
    rows.judge("grey, largest dC", 2);
    rows.reportErrors("grey", summaryOf(errors));
    rows.judge("gamma, largest error", 3);
    if (gammas.empty()) return;
    const auto [least, most] = std::minmax_element(gammas.begin(), gammas.end());
    rows.report("gamma, 10 to 90 %", format("%.2f to %.2f", *least, *most));
}

std::string chartText(const std::vector<PatchFigure>& patches) {
    if (patches.empty()) return "";
    std::vector<std::string> clippedTargets;
    std::vector<std::string> clipped;
    for (const PatchFigure& patch : patches) {
        if (patch.isTargetClipped) clippedTargets.push_back(patch.name);
        if (patch.isPanelClipped) clipped.push_back(patch.name + format(" %.2f", patch.deltaE));
    }
    std::string text = format("ColorChecker, %zu patches", patches.size());
    if (!clipped.empty()) text += format(", %zu counted", patches.size() - clipped.size());
    text += std::string("\n  data: ") + kChartData + "\n  largest dE2000\n";
    for (const PatchFigure& patch : worstOf(patches, kWorst))
        text += "    " + padded(patch.name, 14) + format("%6.2f", patch.deltaE) +
                (patch.isTargetClipped ? "  clipped to the target's gamut" : "") + "\n";
    text += "  clipped to the target's gamut: " + (clippedTargets.empty() ? "none" : joined(clippedTargets)) + "\n";
    return text + "  beyond the panel, not counted above: " + (clipped.empty() ? "none" : joined(clipped)) + "\n\n";
}

std::string controlText(const ControlFigure& control) {
    const TemperaturesFigure& figure = control.temperatures;
    std::string text = "  " + control.operation + ": ";
    text += !figure.isMonotone ? "whether monotone is not known" : *figure.isMonotone ? "monotone" : "NOT monotone";
    if (figure.neutralDeltaE) text += format("; level 0 is dE2000 %.2f from neutral", *figure.neutralDeltaE);
    text += "\n    level      CCT      Duv\n";
    for (const TemperatureFigure& level : figure.levels) {
        if (level.level % kLevelStep == 0)
            text += format("    %5d  %7s  %+.4f\n", level.level, kelvinText(level.kelvin).c_str(), level.duv);
    }
    return text;
}

std::string verdictText(const std::vector<Verdict>& verdicts) {
    std::vector<std::string> broken;
    std::vector<std::string> missing;
    for (const Verdict& verdict : verdicts) {
        if (!verdict.isKept.value_or(false)) (verdict.isKept ? broken : missing).push_back(verdict.figure);
    }
    const size_t judged = verdicts.size() - missing.size();
    std::string text;
    if (!missing.empty())
        text =
            format("%zu of %zu limits judged; not measured: ", judged, verdicts.size()) + joined(missing, "; ") + "\n";
    if (broken.empty()) return text + format("All %zu limits are kept\n", judged);
    return text + format("%zu of %zu limits fail: ", broken.size(), judged) + joined(broken, "; ") + "\n";
}

}  // namespace

std::vector<AccuracyRow> rowsOf(const Accuracy& accuracy) {
    const Figures& figures = accuracy.figures;
    Rows rows(accuracy);
    rows.judge("white, dE2000", 2);
    rows.report("white, x and y", format("%.4f, %.4f", figures.white.xy.x, figures.white.xy.y));
    rows.report("white, CCT", kelvinText(figures.white.kelvin));
    rows.report("white, Duv", format("%+.4f", figures.white.duv));
    addGreys(rows, figures.greys);
    rows.judge("luminance falls, of 256 codes", 0);
    rows.report("distinct drive levels, of 256 codes", format("%d", figures.codes.levels));
    rows.judge("ColorChecker, mean dE2000", 2);
    rows.judge("ColorChecker, largest dE2000", 2);
    for (const PatchFigure& patch : figures.primaries)
        rows.report(patch.name + (patch.isPanelClipped ? " (beyond the panel), dE2000" : ", dE2000"),
                    format("%.2f", patch.deltaE));
    rows.judge("coverage in xy", 1, " %");
    rows.judge("coverage in u'v'", 1, " %");
    rows.report("luminance kept",
                figures.luminanceKept ? format("%.1f %%", 100 * *figures.luminanceKept) : "not known");
    if (accuracy.candelas) rows.report("white luminance", format("%.1f cd/m2", *accuracy.candelas));
    if (figures.contrast) rows.report("contrast", format("%.0f : 1", *figures.contrast));
    rows.reportErrors("panel model's residual", accuracy.residual);
    if (!accuracy.measured) return std::move(rows.rows);
    rows.reportErrors("measured from predicted", accuracy.measured->difference);
    rows.report(format("drift of %zu whites, largest dE2000", accuracy.measured->whites),
                format("%.2f", accuracy.measured->whiteDrift.largest));
    return std::move(rows.rows);
}

std::vector<PatchFigure> worstOf(const std::vector<PatchFigure>& patches, size_t count) {
    std::vector<PatchFigure> worst;
    std::copy_if(patches.begin(), patches.end(), std::back_inserter(worst),
                 [](const PatchFigure& patch) { return !patch.isPanelClipped; });
    std::stable_sort(worst.begin(), worst.end(),
                     [](const PatchFigure& a, const PatchFigure& b) { return a.deltaE > b.deltaE; });
    if (worst.size() > count) worst.resize(count);
    return worst;
}

std::vector<std::string> warningsOf(const Accuracy& accuracy) {
    std::vector<std::string> warnings;
    if (!accuracy.isAdditive)
        warnings.push_back(
            format("the panel model's mean residual is dE2000 %.2f, above %g: the panel's light is not "
                   "additive enough for it",
                   accuracy.residual.mean, kAdditiveResidual));
    if (accuracy.failedCalls > 0)
        warnings.push_back(format("composer calls that failed in the session: %zu", accuracy.failedCalls));
    if (!accuracy.measured) return warnings;
    const MeasuredFigure& measured = *accuracy.measured;
    if (measured.whiteDrift.largest > kSteadyWhite)
        warnings.push_back(
            format("the repeated whites differ by dE2000 %.2f: the panel or the instrument was not "
                   "stable, or rows are mixed up",
                   measured.whiteDrift.largest));
    if (measured.driveDifference > kDriveRounding)
        warnings.push_back(
            format("the measured patches were driven up to %.1f %% off the levels of this session: "
                   "another session, calibration or list of patches",
                   100 * measured.driveDifference));
    if (measured.patches < measured.expected)
        warnings.push_back(format("%zu of %zu patches are not in the measurement: their figures are missing",
                                  measured.expected - measured.patches, measured.expected));
    if (!measured.isInUnitOfPanel)
        warnings.push_back(
            "the unit of both measurements is not known in cd/m2: what is beyond the panel takes it as the same");
    return warnings;
}

std::string textOf(const Target& target) {
    return std::string(nameOf(target.primaries)) +
           format(", white x %.4f y %.4f, gamma %g", target.white.x, target.white.y, target.exponent);
}

std::string textOf(const Accuracy& accuracy) {
    std::string text = "panel        " + accuracy.panel + "\ncalibration  " + accuracy.calibration + "\ntarget       " +
                       textOf(accuracy.target) + "\nvalues       " +
                       (accuracy.measured ? "measured, " + accuracy.measured->file +
                                                "; codes, drive levels and colour temperatures are predicted"
                                          : "predicted by the panel's model") +
                       "\n\n";
    for (const AccuracyRow& row : rowsOf(accuracy)) {
        text += padded(row.figure, 38) + rightAligned(row.value, 16);
        if (row.isKept) text += "   " + padded(row.limit, 14) + (*row.isKept ? "pass" : "FAIL");
        text += "\n";
    }
    text += "\n";
    for (const std::string& warning : warningsOf(accuracy)) text += "Warning: " + warning + "\n\n";
    text += chartText(accuracy.figures.colorChecker);
    text += "Colour temperatures over their levels, in standard mode (simulated libraries)\n";
    for (const ControlFigure& control : accuracy.controls) text += controlText(control);
    return text + "\n" + verdictText(accuracy.verdicts);
}

}  // namespace simulator
