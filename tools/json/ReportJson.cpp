// SPDX-License-Identifier: Apache-2.0
#include "tools/json/ReportJson.h"

#include <cmath>

#include "tools/accuracy/AccuracyTable.h"
#include "tools/json/AccuracyJson.h"
#include "tools/json/CheckJson.h"
#include "tools/json/SessionJson.h"
#include "tools/report/Page.h"
#include "tools/report/SpectralLocus.h"

namespace simulator {

namespace {

Json toJson(double value) {
    return simulator::toJson(static_cast<float>(value));
}

Json toJson(const Chromaticity& point) {
    return {toJson(point.x), toJson(point.y)};
}

Json toJson(const Primaries& primaries) {
    return {toJson(primaries.red), toJson(primaries.green), toJson(primaries.blue)};
}

// Null for nothing.
template <typename T>
Json optionalToJson(const std::optional<T>& value) {
    return value ? Json(*value) : Json();
}

// convert makes JSON of each element.
template <typename Elements, typename Convert>
Json listOf(const Elements& elements, Convert convert) {
    Json list = Json::array();
    for (const auto& element : elements) list.push_back(convert(element));
    return list;
}

// Rows of value, x, y.
Json toJson(const ColorCurve& curve) {
    return listOf(curve, [](const CurvePoint& point) {
        return Json{point.value, toJson(point.xy.x), toJson(point.xy.y)};
    });
}

ColorCurve spectralCurve() {
    ColorCurve curve;
    for (const Chromaticity& xy : kSpectralLocus)
        curve.push_back({kLocusFirstNanometre + kLocusStepNanometres * static_cast<int>(curve.size()), xy});
    return curve;
}

Json calibrationToJson(const std::string& file, const CheckedCalibration& checked) {
    const ConfigXmlParser& record = *checked.record;
    Json json = {{"file", file},
                 {"blocks", listOf(implementation::kCalibrationBlocks, [&record](const CalibrationBlock& block) {
                      return Json{{"name", block.name}, {"complete", record.*block.isComplete}};
                  })}};
    if (record.hasUnlimitedCT) json["endPoints"] = {record.unlimitedWarm, record.unlimitedCold};
    if (record.hasEyeCare) json["eyeCareKelvin"] = {toJson(record.eyeCareMaxCCT), toJson(record.eyeCareMinCCT)};
    json["findings"] = listOf(checked.findings, [](const Finding& finding) { return simulator::toJson(finding); });
    return json;
}

// The table's entries; null for a table that the file does not give.
Json gammaTable(bool isComplete, const float* entries) {
    return isComplete ? valueToJson(std::vector<float>(entries, entries + ConfigXmlParser::kTable)) : Json();
}

Json toJson(const StageWhite& white) {
    return {{"stage", white.stage},
            {"xy", white.xy ? toJson(*white.xy) : Json()},
            {"kelvin", white.kelvin ? Json(std::lround(*white.kelvin)) : Json()}};
}

Json toJson(const StageMatrix& stage) {
    return {{"stage", stage.stage},
            {"matrix", matrixToJson(stage.matrix.data())},
            {"largestOutput", simulator::toJson(ColorManager::maxRgb(stage.matrix))}};
}

Json toJson(const StepRecord& step) {
    return {{"line", step.line},
            {"text", step.text},
            {"comment", step.comment},
            {"answers", listOf(step.answers, valueToJson)},
            {"before", optionalToJson(step.before)},
            {"after", optionalToJson(step.after)}};
}

Json toJson(const PictureRecord& picture) {
    Json json = {{"png", base64(picture.png)}, {"pixels", picture.pixels}, {"clippedPixels", picture.clippedPixels}};
    if (!picture.marked.empty()) json["marked"] = base64(picture.marked);
    return json;
}

Json toJson(const CallRecord& record) {
    Json json = callToJson(record.call, Curves::AS_LEVELS);
    json["ms"] = record.milliseconds;
    return json;
}

Json toJson(const CurveMessage& message) {
    return {message.time.count(), optionalToJson(message.level)};
}

Json toJson(const Vec3& color) {
    return {toJson(color[0]), toJson(color[1]), toJson(color[2])};
}

Json toJson(const AccuracyRow& row) {
    return {{"figure", row.figure}, {"value", row.value}, {"limit", row.limit}, {"pass", optionalToJson(row.isKept)}};
}

constexpr auto kEachToJson = [](const auto& element) { return toJson(element); };

Json toJson(const ChromaticitySection& section) {
    return {{"spectralLocus", toJson(spectralCurve())},
            {"planckianLocus", toJson(planckianCurve())},
            {"d65", toJson(kD65)},
            {"srgb", toJson(kSrgbPrimaries)},
            {"panel", toJson(section.panel.primaries)},
            {"assumptions", section.panel.assumptions},
            {"whites", listOf(section.whites, kEachToJson)},
            {"unlimited", toJson(section.unlimited)},
            {"eyeCare", toJson(section.eyeCare)}};
}

Json toJson(const LightSection& light) {
    return {{"samples",
             listOf(light.samples,
                    [](const Decision& sample) {
                        return Json{sample.time.count(), sample.lux, sample.mean, optionalToJson(sample.composerLevel)};
                    })},
            {"messages", listOf(light.messages, kEachToJson)},
            {"bright", implementation::kBrightLux},
            {"dim", implementation::kDimLux},
            {"name", light.name}};
}

// The figures, and what the page shows of them.
Json toJson(const Accuracy& accuracy) {
    Json json = accuracyToJson(accuracy);
    json["rows"] = listOf(rowsOf(accuracy), kEachToJson);
    json["targetText"] = textOf(accuracy.target);
    const Limits& limits = accuracy.limits;
    json["limitValues"] = {{"greyChroma", limits.greyChroma},
                           {"gamma", limits.gamma},
                           {"colorCheckerLargest", limits.colorCheckerLargest}};
    const auto& patches = accuracy.figures.colorChecker;
    for (size_t i = 0; i < patches.size(); ++i) {
        json["colorChecker"][i]["targetRgb"] = toJson(codedColor(accuracy.target, patches[i].target));
        json["colorChecker"][i]["shownRgb"] = toJson(codedColor(accuracy.target, patches[i].shown));
    }
    return json;
}

}  // namespace

Json toJson(const Report& report) {
    const ConfigXmlParser& record = *report.calibration.record;
    const SessionRecord& session = report.session;
    return {{"accuracy", report.accuracy ? toJson(*report.accuracy) : Json()},
            {"calibration", calibrationToJson(report.calibrationFile, report.calibration)},
            {"gamma",
             {{"calibrated", gammaTable(record.hasGammaCalib, record.gammaCalib)},
              {"tuned", gammaTable(record.hasGammaTuning, record.gammaTuning)}}},
            {"chromaticity", toJson(report.chromaticity)},
            {"matrices", listOf(report.matrices, kEachToJson)},
            {"session",
             {{"name", report.script},
              {"state", stateToJson(session.state)},
              {"steps", listOf(session.steps, kEachToJson)},
              {"pictures", listOf(session.pictures, kEachToJson)},
              {"calls", listOf(session.calls, kEachToJson)}}},
            {"light", report.light ? toJson(*report.light) : Json()}};
}

}  // namespace simulator
