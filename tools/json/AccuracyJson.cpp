// SPDX-License-Identifier: Apache-2.0
#include "tools/json/AccuracyJson.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <set>
#include <stdexcept>

#include "tools/accuracy/AccuracyTable.h"
#include "tools/accuracy/ColorChecker.h"
#include "tools/text/Text.h"

namespace simulator {

namespace {

struct NamedLimit {
    const char* name;
    double Limits::*limit;
};
constexpr NamedLimit kLimits[] = {
    {"white", &Limits::white},
    {"greyChroma", &Limits::greyChroma},
    {"gamma", &Limits::gamma},
    {"colorCheckerMean", &Limits::colorCheckerMean},
    {"colorCheckerLargest", &Limits::colorCheckerLargest},
    {"coverage", &Limits::coverage},
};

std::string names() {
    std::vector<std::string> list;
    for (const auto& [name, limit] : kLimits) list.emplace_back(name);
    return joined(list);
}

Json number(double value) {
    return simulator::toJson(static_cast<float>(value));
}

Json number(const std::optional<double>& value) {
    return value ? number(*value) : Json();
}

Json point(const Chromaticity& xy) {
    return {number(xy.x), number(xy.y)};
}

Json color(const Vec3& xyz) {
    return {number(xyz[0]), number(xyz[1]), number(xyz[2])};
}

Json toJson(const Target& target) {
    return {{"name", nameOf(target.primaries)},       {"red", point(target.primaries.red)},
            {"green", point(target.primaries.green)}, {"blue", point(target.primaries.blue)},
            {"white", point(target.white)},           {"gamma", number(target.exponent)}};
}

Json toJson(const Verdict& verdict) {
    return {{"figure", verdict.figure},
            {"value", number(verdict.value)},
            {verdict.isLeast ? "atLeast" : "atMost", number(verdict.limit)},
            {"pass", verdict.isKept ? Json(*verdict.isKept) : Json()}};
}

Json toJson(const GreyFigure& grey) {
    return {{"level", number(grey.level)},
            {"deltaE2000", number(grey.deltaE)},
            {"deltaC", number(grey.deltaC)},
            {"gamma", number(grey.gamma)},
            {"gammaError", number(grey.gammaError)}};
}

Json toJson(const PatchFigure& patch) {
    return {{"name", patch.name},
            {"targetXyz", color(patch.target)},
            {"shownXyz", color(patch.shown)},
            {"deltaE2000", number(patch.deltaE)},
            {"clippedToTarget", patch.isTargetClipped},
            {"beyondPanel", patch.isPanelClipped}};
}

Json whiteToJson(const Accuracy& accuracy) {
    const WhiteFigure& white = accuracy.figures.white;
    return {{"xy", point(white.xy)},
            {"kelvin", number(white.kelvin)},
            {"duv", number(white.duv)},
            {"deltaE2000", number(white.deltaE)},
            {"candelas", number(accuracy.candelas)},
            {"luminanceKept", number(accuracy.figures.luminanceKept)},
            {"contrast", number(accuracy.figures.contrast)}};
}

Json toJson(const TemperatureFigure& level) {
    return {
        {"level", level.level}, {"xy", point(level.xy)}, {"kelvin", number(level.kelvin)}, {"duv", number(level.duv)}};
}

Json toJson(const ControlFigure& control);

Json toJson(const MeasuredFigure& measured) {
    return {{"file", measured.file},
            {"patches", measured.patches},
            {"expectedPatches", measured.expected},
            {"fromPredicted", errorsToJson(measured.difference)},
            {"whites", measured.whites},
            {"whiteDrift", errorsToJson(measured.whiteDrift)},
            {"driveDifference", number(measured.driveDifference)}};
}

template <typename Item>
Json listOf(const std::vector<Item>& items) {
    Json list = Json::array();
    for (const Item& item : items) list.push_back(toJson(item));
    return list;
}

Json toJson(const ControlFigure& control) {
    const TemperaturesFigure& figure = control.temperatures;
    return {{"operation", control.operation},
            {"libraries", "simulated"},
            {"monotone", figure.isMonotone ? Json(*figure.isMonotone) : Json()},
            {"level0DeltaE2000", number(figure.neutralDeltaE)},
            {"levels", listOf(figure.levels)}};
}

nlohmann::json parseLimits(const std::filesystem::path& file) {
    requireFile(file, "a JSON file of limits");
    std::ifstream stream(file);
    const std::string text{std::istreambuf_iterator<char>(stream), {}};
    std::set<std::string> known;
    const auto requireOnce = [&](int depth, nlohmann::json::parse_event_t event, const nlohmann::json& key) {
        if (event == nlohmann::json::parse_event_t::key && depth == 1 && !known.insert(key).second)
            throw std::runtime_error(file.string() + ": repeats " + key.dump() + "; expected each limit once");
        return true;
    };
    try {
        return nlohmann::json::parse(text, requireOnce);
    } catch (const nlohmann::json::parse_error& error) {
        const auto end = text.begin() + static_cast<std::ptrdiff_t>(std::min(error.byte, text.size()));
        throw std::runtime_error(file.string() + ":" + std::to_string(1 + std::count(text.begin(), end, '\n')) +
                                 ": is not JSON; expected an object with some of " + names());
    } catch (const nlohmann::json::out_of_range&) {
        throw std::runtime_error(file.string() + ": has a number that is out of range; expected limits");
    }
}

}  // namespace

Limits readLimits(const std::filesystem::path& file) {
    const auto fail = [&file](const std::string& what) { throw std::runtime_error(file.string() + ": " + what); };
    const nlohmann::json json = parseLimits(file);
    if (!json.is_object()) fail("is not a JSON object; expected one of " + names());
    Limits limits;
    for (const auto& [name, value] : json.items()) {
        const auto known = std::find_if(std::begin(kLimits), std::end(kLimits),
                                        [&key = name](const NamedLimit& limit) { return key == limit.name; });
        if (known == std::end(kLimits)) fail("has a limit \"" + name + "\"; expected one of " + names());
        const bool isPercent = known->limit == &Limits::coverage;
        if (!value.is_number() || !(isPercent ? value >= 1 && value <= 100 : value > 0))
            fail(name + " is " + value.dump() + "; expected " +
                 (isPercent ? "percent, from 1 to 100" : "a number above 0"));
        limits.*(known->limit) = value;
    }
    return limits;
}

Json errorsToJson(const ColorErrors& errors) {
    return {{"mean", number(errors.mean)}, {"largest", number(errors.largest)}};
}

Json accuracyToJson(const Accuracy& accuracy) {
    const Figures& figures = accuracy.figures;
    return {{"panel", accuracy.panel},
            {"calibration", accuracy.calibration},
            {"target", toJson(accuracy.target)},
            {"pass", isKept(accuracy)},
            {"limits", listOf(accuracy.verdicts)},
            {"measured", accuracy.measured ? toJson(*accuracy.measured) : Json()},
            {"warnings", warningsOf(accuracy)},
            {"panelModelResidual", errorsToJson(accuracy.residual)},
            {"white", whiteToJson(accuracy)},
            {"greys", listOf(figures.greys)},
            {"luminanceFalls", figures.codes.falls},
            {"driveLevels", figures.codes.levels},
            {"colorCheckerData", kChartData},
            {"colorChecker", listOf(figures.colorChecker)},
            {"primaries", listOf(figures.primaries)},
            {"coverageXy", number(figures.coverageXy)},
            {"coverageUv", number(figures.coverageUv)},
            {"colorTemperatures", listOf(accuracy.controls)}};
}

}  // namespace simulator
