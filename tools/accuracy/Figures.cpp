// SPDX-License-Identifier: Apache-2.0
// Both whites are scaled to Y = 100, and L*a*b* is relative to the target's white: a display's luminance does not
// count, its white does. The gamma at a level is ln(Y / Yw) / ln(level).
#include "tools/accuracy/Figures.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <set>
#include <stdexcept>

#include "tools/accuracy/ColorChecker.h"
#include "tools/accuracy/Colorimetry.h"
#include "tools/accuracy/Gamut.h"

namespace simulator {

namespace {

constexpr double kLowestGammaLevel = 0.1;
constexpr double kHighestGammaLevel = 0.9;
constexpr double kLeastLuminance = 1e-6;  // of white: the logarithm of black is finite
constexpr double kLeastWhite = 0.01;
constexpr double kVisibleClip = 0.5;  // delta E 2000
constexpr double kRounding = 1e-9;    // of white's luminance
constexpr size_t kCodes = 256;
constexpr Vec3 kWhite = grey(kGreys - 1);
constexpr Vec3 kBlack = grey(0);

Vec3 scaled(const Vec3& v, double factor) {
    return {v[0] * factor, v[1] * factor, v[2] * factor};
}

// XYZ of shown white.
Vec3 whiteOf(const Shown& shown, const PanelModel& panel) {
    const auto white = shown(kWhite);
    if (!white) throw std::runtime_error("white was not measured; expected a patch with RGB 100 100 100");
    if ((*white)[1] < kLeastWhite * panel.white()[1])
        throw std::runtime_error("white is darker than 1 % of the panel's; expected a state that shows a picture");
    return *white;
}

// The two displays that are compared.
struct Comparison {
    const PanelModel& panel;
    const Target& target;
    const Shown& shown;
    double whiteLuminance;  // Y of shown white

    // XYZ, Y = 100 for the shown white.
    std::optional<Vec3> shownXyz(const Vec3& rgb) const {
        const auto xyz = shown(rgb);
        return xyz ? std::optional(scaled(*xyz, 100 / whiteLuminance)) : std::nullopt;
    }
    double deltaE(const Vec3& a, const Vec3& b) const { return deltaE2000(a, b, whiteOf(target)); }
    bool isPanelClipped(const Vec3& xyz) const {
        const Vec3 wanted = scaled(xyz, whiteLuminance / 100);
        return deltaE(scaled(panel.xyz(panel.drive(wanted)), 100 / whiteLuminance), xyz) > kVisibleClip;
    }
};

WhiteFigure whiteFigure(const Comparison& display, const Vec3& shown) {
    const Chromaticity xy = chromaticityOf(shown);
    return {xy, correlatedColorTemperature(xy), duvOf(xy), display.deltaE(shown, whiteOf(display.target))};
}

std::vector<GreyFigure> greyFigures(const Comparison& display) {
    std::vector<GreyFigure> figures;
    for (size_t i = 0; i < kGreys; ++i) {
        const auto shown = display.shownXyz(grey(i));
        if (!shown) continue;
        const double level = grey(i)[0];
        const Vec3 target = xyzOf(display.target, grey(i));
        GreyFigure figure{
            level, display.deltaE(*shown, target), deltaC(*shown, target, whiteOf(display.target)), {}, {}};
        if (level >= kLowestGammaLevel && level <= kHighestGammaLevel) {
            const auto gammaOf = [level](const Vec3& xyz) {
                return std::log(std::max(xyz[1] / 100, kLeastLuminance)) / std::log(level);
            };
            figure.gamma = gammaOf(*shown);
            figure.gammaError = gammaOf(*shown) - gammaOf(target);
        }
        figures.push_back(figure);
    }
    return figures;
}

std::optional<PatchFigure> patchFigure(const Comparison& display, const ChartPatch& patch) {
    const auto shown = display.shownXyz(patch.rgb);
    if (!shown) return std::nullopt;
    return PatchFigure{std::string(patch.name),           patch.xyz,       *shown,
                       display.deltaE(*shown, patch.xyz), patch.isClipped, display.isPanelClipped(patch.xyz)};
}

template <typename Patches>
std::vector<PatchFigure> patchFigures(const Comparison& display, const Patches& patches) {
    std::vector<PatchFigure> figures;
    for (const ChartPatch& patch : patches) {
        if (auto figure = patchFigure(display, patch)) figures.push_back(*std::move(figure));
    }
    return figures;
}

std::array<ChartPatch, kPrimaryColors.size()> primaryPatches(const Target& target) {
    std::array<ChartPatch, kPrimaryColors.size()> patches;
    for (size_t i = 0; i < patches.size(); ++i) {
        const auto& [name, rgb] = kPrimaryColors[i];
        patches[i] = {name, rgb, xyzOf(target, rgb), false};
    }
    return patches;
}

// In percent; toPoint: from a chromaticity to the plane.
template <typename ToPoint>
std::optional<double> coverageFigure(const Comparison& display, ToPoint toPoint) {
    const auto& [red, green, blue] = display.target.primaries;
    const Triangle target = {toPoint(red), toPoint(green), toPoint(blue)};
    Triangle gamut;
    for (size_t i = 0; i < gamut.size(); ++i) {
        const auto xyz = display.shownXyz(kPrimaryColors[i].rgb);
        if (!xyz) return std::nullopt;
        gamut[i] = toPoint(chromaticityOf(*xyz));
    }
    return 100 * coverage(gamut, target);
}

Point xyPoint(const Chromaticity& c) {
    return {c.x, c.y};
}

Point uvPoint(const Chromaticity& c) {
    const UvPrime uv = toUvPrime(c);
    return {uv.u, uv.v};
}

// Panels are driven with 8 bits per channel.
CodesFigure codesFigure(const DisplayState& state, const PanelModel& panel) {
    Picture codes{kCodes, 1, {}};
    for (size_t code = 0; code < kCodes; ++code) codes.pixels.insert(codes.pixels.end(), 3, static_cast<uint8_t>(code));
    const Bytes driven = showPicture(codes, state, 1).picture.pixels;
    std::set<Vec3> levels;
    CodesFigure figure{};
    double before = 0;
    for (size_t i = 0; i < driven.size(); i += 3) {
        const Vec3 drive = {driven[i] / 255.0, driven[i + 1] / 255.0, driven[i + 2] / 255.0};
        const double luminance = panel.xyz(drive)[1] / panel.white()[1];
        if (i > 0 && luminance < before - kRounding) ++figure.falls;
        before = luminance;
        levels.insert(drive);
    }
    figure.levels = static_cast<int>(levels.size());
    return figure;
}

}  // namespace

Figures figuresOf(const DisplayState& state, const PanelModel& panel, const Target& target, const Shown& shown) {
    const Vec3 white = whiteOf(shown, panel);
    const Comparison display{panel, target, shown, white[1]};
    Figures figures{};
    figures.white = whiteFigure(display, scaled(white, 100 / white[1]));
    figures.luminanceKept = display.whiteLuminance / panel.white()[1];
    const auto black = display.shownXyz(kBlack);
    if (black && (*black)[1] > 0) figures.contrast = 100 / (*black)[1];
    figures.codes = codesFigure(state, panel);
    figures.greys = greyFigures(display);
    figures.colorChecker = patchFigures(display, colorChecker(target));
    figures.primaries = patchFigures(display, primaryPatches(target));
    figures.coverageXy = coverageFigure(display, xyPoint);
    figures.coverageUv = coverageFigure(display, uvPoint);
    return figures;
}

std::optional<ColorErrors> errorsOf(const std::vector<PatchFigure>& patches) {
    std::vector<double> errors;
    for (const PatchFigure& patch : patches) {
        if (!patch.isPanelClipped) errors.push_back(patch.deltaE);
    }
    return errors.empty() ? std::nullopt : std::optional(summaryOf(errors));
}

TemperaturesFigure temperaturesOf(const std::vector<std::pair<int, DisplayState>>& states, const DisplayState& neutral,
                                  const PanelModel& panel) {
    const Vec3 neutralWhite = whiteOf(predicted(neutral, panel), panel);
    TemperaturesFigure figure{};
    std::vector<double> kelvins;
    for (const auto& [level, state] : states) {
        const Vec3 white = whiteOf(predicted(state, panel), panel);
        const Chromaticity xy = chromaticityOf(white);
        const auto kelvin = correlatedColorTemperature(xy);
        figure.levels.push_back({level, xy, kelvin, duvOf(xy)});
        if (kelvin) kelvins.push_back(*kelvin);
        if (level == 0)
            figure.neutralDeltaE = deltaE2000(scaled(white, neutralWhite[1] / white[1]), neutralWhite, neutralWhite);
    }
    if (kelvins.size() == states.size())
        figure.isMonotone = std::is_sorted(kelvins.begin(), kelvins.end()) ||
                            std::is_sorted(kelvins.begin(), kelvins.end(), std::greater<>());
    return figure;
}

}  // namespace simulator
