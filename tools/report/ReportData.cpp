// SPDX-License-Identifier: Apache-2.0
#include "tools/report/ReportData.h"

#include <platform/Numbers.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <iostream>
#include <sstream>

#include "calibration/PanelTable.h"
#include "color/PowerTable.h"
#include "service/DefaultPanel.h"
#include "simulator/PhoneFiles.h"
#include "simulator/closed/EyeCare.h"
#include "simulator/closed/UnlimitedColorTemperature.h"
#include "tools/json/CheckJson.h"
#include "tools/light/Replay.h"
#include "tools/report/SpectralLocus.h"
#include "tools/session/DataFolder.h"
#include "tools/text/Text.h"

namespace simulator {

namespace {

namespace fs = std::filesystem;
namespace implementation = ::vendor::kov::hardware::display_control::V1_0::implementation;
using implementation::kDefaultWhitePoint;
using implementation::TMat33;

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

constexpr Vec3 kWhite = {1, 1, 1};

Json toJson(double value) {
    return simulator::toJson(static_cast<float>(value));
}

Json toJson(const Chromaticity& point) {
    return {toJson(point.x), toJson(point.y)};
}

Json toJson(const Primaries& primaries) {
    return {toJson(primaries.red), toJson(primaries.green), toJson(primaries.blue)};
}

std::vector<float> powerTable(float exponent) {
    std::vector<float> table(implementation::kPowerTable);
    implementation::fillPowerTable(table.data(), exponent);
    return table;
}

Json uniqueLevelsRow(const char* name, const std::vector<float>& table) {
    Json row = {{"table", name}};
    for (const int bits : {8, 10, 12}) row[std::to_string(bits)] = uniqueLevels(table, bits);
    return row;
}

Mat3 toMat3(const TMat33<float>& matrix) {
    Mat3 result{};
    std::copy_n(matrix.data(), result.size(), result.begin());
    return result;
}

// What a display with this matrix from linear RGB to XYZ shows for linear RGB; a channel below 0 has no light. Nothing
// for black and for what is not finite.
std::optional<Chromaticity> shownColor(const Mat3& toXyz, Vec3 rgb) {
    for (double& channel : rgb) channel = std::max(channel, 0.0);
    const Vec3 xyz = multiply(toXyz, rgb);
    const double sum = xyz[0] + xyz[1] + xyz[2];
    if (!std::isfinite(sum) || sum <= 0) return std::nullopt;
    return Chromaticity{xyz[0] / sum, xyz[1] / sum};
}

// Correlated colour temperature in kelvin by McCamy, Color Res. Appl. 17 (1992), 142; null where it says nothing.
Json correlatedTemperature(const Chromaticity& point) {
    const double n = (point.x - 0.3320) / (0.1858 - point.y);
    const double kelvin = ((449 * n + 3525) * n + 6823.3) * n + 5520.33;
    return kelvin >= kLocusMinKelvin && kelvin <= kLocusMaxKelvin ? Json(std::lround(kelvin)) : Json();
}

Json whiteRow(const char* stage, const Mat3& toXyz, const Vec3& rgb) {
    const auto point = shownColor(toXyz, rgb);
    return {{"stage", stage},
            {"xy", point ? toJson(*point) : Json()},
            {"kelvin", point ? correlatedTemperature(*point) : Json()}};
}

Json whitesOfStages(const Mat3& toXyz, const ColorManager& colors) {
    Json rows = Json::array();
    rows.push_back(whiteRow("native panel", toXyz, kWhite));
    Vec3 white = multiply(toMat3(colors.wpcCtm), multiply(toMat3(colors.ccmCtm), kWhite));
    rows.push_back(whiteRow("after colour correction and white point", toXyz, white));
    white = multiply(toMat3(colors.unlimitedCtm), white);
    rows.push_back(whiteRow("after unlimited colour temperature", toXyz, white));
    white = multiply(toMat3(colors.eyeCareCtm), white);
    rows.push_back(whiteRow("after eye care", toXyz, white));
    return rows;
}

// White of the standard mode: the calibration's two matrices, the identity for one that the file does not give.
Vec3 calibratedWhite(const ConfigXmlParser& record) {
    Vec3 white = kWhite;
    const auto apply = [&white](const float* elements) {
        Mat3 matrix{};
        std::copy_n(elements, matrix.size(), matrix.begin());
        white = multiply(matrix, white);
    };
    if (record.hasCtmCcm) apply(record.ctmCcm);
    if (record.hasCtmWpc) apply(record.ctmWpc);
    return white;
}

// Level, x, y.
Json sweepRow(int level, const Mat3& toXyz, const Vec3& rgb) {
    const auto point = shownColor(toXyz, rgb);
    if (!point) return {level, nullptr, nullptr};
    return {level, toJson(point->x), toJson(point->y)};
}

Json unlimitedSweep(const ConfigXmlParser& record, const Mat3& toXyz) {
    const EndPoints ends = record.hasUnlimitedCT ? EndPoints{record.unlimitedWarm, record.unlimitedCold}
                                                 : EndPoints{ColorManager::kDefaultWarm, ColorManager::kDefaultCold};
    const Vec3 white = calibratedWhite(record);
    Json rows = Json::array();
    for (int level = kUnlimitedWarmest; level <= kUnlimitedColdest; ++level) {
        const auto gains = unlimitedGains(ends, level);
        if (!gains) return nullptr;
        rows.push_back(
            sweepRow(level, toXyz, {(*gains)[0] * white[0], (*gains)[1] * white[1], (*gains)[2] * white[2]}));
    }
    return rows;
}

Json eyeCareSweep(const ConfigXmlParser& record, const Mat3& toXyz) {
    if (!record.hasEyeCare) return nullptr;
    const EyeCareParams params{{std::begin(record.eyeCareCoeffs), std::end(record.eyeCareCoeffs)},
                               platform::toInt32(record.eyeCareMaxCCT),
                               platform::toInt32(record.eyeCareMinCCT)};
    const Vec3 white = calibratedWhite(record);
    Json rows = Json::array();
    for (int level = kEyeCareWeakest; level <= kEyeCareStrongest; ++level) {
        const auto matrix = eyeCareMatrix(params, level);
        if (!matrix) return nullptr;
        rows.push_back(sweepRow(level, toXyz, multiply(*matrix, white)));
    }
    return rows;
}

Json spectralLocus() {
    Json points = Json::array();
    int nanometres = kLocusFirstNanometre;
    for (const Chromaticity& point : kSpectralLocus) {
        points.push_back({nanometres, toJson(point.x), toJson(point.y)});
        nanometres += kLocusStepNanometres;
    }
    return points;
}

// Kelvin, x, y; closer where the locus bends.
Json planckian() {
    struct Stretch {
        int from, step;  // kelvin
    };
    Json points = Json::array();
    const auto add = [&points](int kelvin) {
        const auto point = planckianLocus(kelvin);
        points.push_back({kelvin, toJson(point->x), toJson(point->y)});
    };
    constexpr int kEnd = static_cast<int>(kLocusMaxKelvin);
    constexpr Stretch kStretches[] = {{2000, 100}, {4000, 250}, {10000, 2500}, {kEnd + 1, 0}};
    add(static_cast<int>(kLocusMinKelvin));
    for (size_t i = 0; i + 1 < std::size(kStretches); ++i) {
        for (int kelvin = kStretches[i].from; kelvin < kStretches[i + 1].from; kelvin += kStretches[i].step)
            add(kelvin);
    }
    return points;
}

Json matrixRow(const char* stage, const TMat33<float>& matrix) {
    return {{"stage", stage},
            {"matrix", matrixToJson(matrix.data())},
            {"largestOutput", simulator::toJson(ColorManager::maxRgb(matrix))}};
}

// The calibration file that the sample phone's panel has.
fs::path sampleCalibration() {
    const PhoneFiles sample = PhoneFiles::at(dataFolder() / "phone");
    return sample.pathOf(implementation::identifyPanel().calibFile);
}

Json calibrationSection(const fs::path& file, const CheckedCalibration& checked) {
    const ConfigXmlParser& record = *checked.record;
    Json section = {{"file", file.filename().string()}, {"blocks", Json::array()}};
    for (const implementation::CalibrationBlock& block : implementation::kCalibrationBlocks)
        section["blocks"].push_back({{"name", block.name}, {"complete", record.*block.isComplete}});
    if (record.hasUnlimitedCT) section["endPoints"] = {record.unlimitedWarm, record.unlimitedCold};
    if (record.hasEyeCare) section["eyeCareKelvin"] = {toJson(record.eyeCareMaxCCT), toJson(record.eyeCareMinCCT)};
    section["findings"] = Json::array();
    for (const Finding& finding : checked.findings) section["findings"].push_back(simulator::toJson(finding));
    return section;
}

// The file's primaries, or the library's built-in ones.
Primaries primariesOf(const ConfigXmlParser& record) {
    const float* const x = record.hasWpcParam ? record.wpcParam : kDefaultWhitePoint.params;
    const float* const y = x + 3;
    return {{x[0], y[0]}, {x[1], y[1]}, {x[2], y[2]}};
}

SessionRecord runScript(const ReportInput& input) {
    if (!input.script) {
        std::istringstream own(kOwnSession);
        return recordSession(own, "built-in session", input.calibration);
    }
    if (*input.script == "-") return recordSession(std::cin, "<stdin>", input.calibration);
    requireFile(*input.script, "a script");
    std::ifstream file(*input.script);
    return recordSession(file, input.script->string(), input.calibration);
}

}  // namespace

size_t uniqueLevels(const std::vector<float>& table, int bits) {
    const float highest = static_cast<float>((1 << bits) - 1);
    std::vector<bool> seen(size_t{1} << bits);
    for (const float entry : table) {
        const float clamped = entry > 0.0F ? std::min(entry, 1.0F) : 0.0F;
        seen[static_cast<size_t>(std::lround(clamped * highest))] = true;
    }
    return static_cast<size_t>(std::count(seen.begin(), seen.end(), true));
}

Json gammaSection(const ConfigXmlParser& record) {
    Json section = {{"calibrated", nullptr}, {"tuned", nullptr}};
    Json unique = {uniqueLevelsRow("identity", powerTable(1)), uniqueLevelsRow("1/2.2", powerTable(1 / 2.2F))};
    const auto add = [&](const char* name, const float* entries) {
        const std::vector<float> table(entries, entries + ConfigXmlParser::kTable);
        Json values = Json::array();
        for (const float entry : table) values.push_back(simulator::toJson(entry));
        section[name] = std::move(values);
        unique.push_back(uniqueLevelsRow(name, table));
    };
    if (record.hasGammaCalib) add("calibrated", record.gammaCalib);
    if (record.hasGammaTuning) add("tuned", record.gammaTuning);
    section["uniqueLevels"] = std::move(unique);
    return section;
}

PanelColors::PanelColors(const ConfigXmlParser& record, const std::optional<Chromaticity>& driverWhite)
    : primaries(primariesOf(record)),
      white(driverWhite.value_or(Chromaticity{kDefaultWhitePoint.whiteX, kDefaultWhitePoint.whiteY})),
      assumptions(Json::array()) {
    if (!record.hasWpcParam)
        assumptions.push_back("The file gives no primaries (WPCParam): the library's built-in ones are assumed.");
    if (!driverWhite)
        assumptions.push_back("The driver reports no white point: the library's built-in one is assumed.");
}

Json chromaticitySection(const ConfigXmlParser& record, const PanelColors& panel,
                         const std::optional<ColorManager>& colors) {
    Json section = {{"spectralLocus", spectralLocus()},
                    {"planckianLocus", planckian()},
                    {"d65", toJson(kD65)},
                    {"srgb", toJson(kSrgbPrimaries)},
                    {"panel", toJson(panel.primaries)},
                    {"nativeWhite", toJson(panel.white)},
                    {"assumptions", panel.assumptions},
                    {"whites", nullptr},
                    {"unlimited", nullptr},
                    {"eyeCare", nullptr}};
    const auto toXyz = rgbToXyz(panel.primaries, panel.white);
    if (!toXyz) {
        section["assumptions"].push_back("No display has these primaries and this white: no colour can be computed.");
        return section;
    }
    if (colors) section["whites"] = whitesOfStages(*toXyz, *colors);
    section["unlimited"] = unlimitedSweep(record, *toXyz);
    section["eyeCare"] = eyeCareSweep(record, *toXyz);
    return section;
}

Json matricesSection(const std::optional<ColorManager>& colors) {
    if (!colors) return nullptr;
    return {matrixRow("colour correction", colors->ccmCtm),
            matrixRow("white point", colors->wpcCtm),
            matrixRow("unlimited colour temperature", colors->unlimitedCtm),
            matrixRow("eye care", colors->eyeCareCtm),
            matrixRow("product", colors->composedCtm()),
            matrixRow("final: product divided by its largest output", colors->finalCtm())};
}

Json lightSection(const LightTrace& trace, const std::function<void(double)>& progress) {
    Json samples = Json::array();
    Json messages = Json::array();
    Json last;  // the latest sample, when it ends a run of equal samples and is not in samples yet
    const auto level = [](const std::optional<int32_t>& value) { return value ? Json(*value) : Json(); };
    replay(trace, [&](const Decision& decision) {
        if (progress) progress(shareDone(decision, trace));
        Json row = {decision.time.count(), decision.lux, decision.mean, level(decision.composerLevel)};
        const Json& previous = last.is_null() && !samples.empty() ? samples.back() : last;
        const bool repeats = !previous.is_null() && std::equal(row.begin() + 1, row.end(), previous.begin() + 1);
        if (!repeats && !last.is_null()) samples.push_back(last);
        if (!repeats) samples.push_back(row);
        last = repeats ? std::move(row) : Json();
        for (const CurveMessage& message : decision.messages) {
            messages.push_back({message.time.count(), level(message.level)});
        }
    });
    if (!last.is_null()) samples.push_back(last);
    return {{"samples", std::move(samples)},
            {"messages", std::move(messages)},
            {"bright", implementation::kBrightLux},
            {"dim", implementation::kDimLux}};
}

Report gatherReport(const ReportInput& input) {
    const std::optional<LightTrace> trace =
        input.trace ? std::optional<LightTrace>(readLightTrace(*input.trace)) : std::nullopt;
    const fs::path file = input.calibration ? *input.calibration : sampleCalibration();
    const CheckedCalibration checked = checkCalibration(file);
    SessionRecord session = runScript(input);
    const PanelColors panel(*checked.record, session.driverWhite);

    Json report = {{"calibration", calibrationSection(file, checked)},
                   {"gamma", gammaSection(*checked.record)},
                   {"chromaticity", chromaticitySection(*checked.record, panel, session.colors)},
                   {"matrices", matricesSection(session.colors)},
                   {"session",
                    {{"name", input.script ? Json(input.script->filename().string()) : Json()},
                     {"state", std::move(session.state)},
                     {"steps", std::move(session.steps)},
                     {"pictures", std::move(session.pictures)},
                     {"calls", std::move(session.calls)}}},
                   {"light", nullptr}};
    if (trace) {
        report["light"] = lightSection(*trace, input.progress);
        report["light"]["name"] = input.trace->filename().string();
    }
    return {std::move(report), checked.findings.size()};
}

}  // namespace simulator
