// SPDX-License-Identifier: Apache-2.0
#include "tests/model/Settings.h"

#include <algorithm>
#include <charconv>
#include <cinttypes>
#include <cstdio>
#include <memory>
#include <tuple>

namespace model {

namespace {

template <typename Number>
std::string numberText(Number value) {
    char text[64];
    return {text, std::to_chars(text, text + sizeof text, value).ptr};
}

std::string element(const std::string& name, const std::string& text) {
    std::string whole;
    whole.reserve(text.size() + 2 * name.size() + 6);
    return whole.append("<").append(name).append(">").append(text).append("</").append(name).append(">\n");
}

std::string block(const std::string& name, const std::vector<float>& values) {
    std::string text;
    for (const float value : values) text += element("v", numberText(value));
    return values.empty() ? "" : element(name, text);
}

// A file's kind and contents.
std::string textOf(const Node& node) {
    return std::to_string(static_cast<int>(node.kind)) + node.text;
}
std::string textOf(const Calibration& file) {
    std::string ends;
    for (const int32_t color : file.endPoints) {
        char text[16];
        snprintf(text, sizeof text, "%" PRIX32, static_cast<uint32_t>(color));
        ends += element(ends.empty() ? "Warm" : "Cold", text);
    }
    std::string eyeCare;
    for (size_t i = 0; i < file.eyeCare.size(); ++i)
        eyeCare += element(i == 0 ? "MaxCCT" : i == 1 ? "MinCCT" : "c", numberText(file.eyeCare[i]));
    return textOf({file.kind, (file.isWellFormed ? "<panel>" : "<panel><") + block("CTM_WPC", file.whitePoint) +
                                  block("CTM_CCM", file.colorCorrection) + block("WPCParam", file.whitePointParams) +
                                  block("Gamma_Calib", file.calibrated) + block("Gamma_Tuning", file.tuned) +
                                  element("UnlimitedCT", ends) + element("EyeCare", eyeCare) + "</panel>"});
}

bool isSame(const Calibration& a, const Calibration& b) {
    const auto all = [](const Calibration& c) {
        return std::tie(c.kind, c.isWellFormed, c.whitePoint, c.colorCorrection, c.whitePointParams, c.calibrated,
                        c.tuned, c.endPoints, c.eyeCare);
    };
    return all(a) == all(b);
}

void put(const std::string& next, Kind last, const char* path, simulator::PhoneFiles& files) {
    const Kind kind{next[0] - '0'};
    if (kind != last) files.remove(path);
    if (kind == Kind::FILE) files.write(path, next.substr(1));
    if (kind == Kind::FOLDER) files.makeFolder(path);
}

void applyClosed(const Settings& next, const Settings& last, simulator::ClosedLibraries& closed) {
    using Function = ClosedFunction;
    const auto all = [](const Settings& s) {
        return std::tie(s.gains, s.coefficients, s.whiteGains, s.curves, s.results);
    };
    if (all(next) == all(last)) return;
    const auto s = std::make_shared<const Settings>(next);
    closed.setParams = [s](int, int) { return s->resultOf(Function::SET_PARAMS); };
    closed.setEyeCareParamsOled = [s](auto&) { return s->resultOf(Function::SET_EYE_CARE_PARAMS_OLED); };
    closed.getUnlimitedCTParams = [s](int, float* gains) {
        std::copy(s->gains.begin(), s->gains.end(), gains);
        return s->resultOf(Function::GET_UNLIMITED_CT_PARAMS);
    };
    closed.getEyeCareCoeffOled = [s](int, float* coefficients) {
        std::copy(s->coefficients.begin(), s->coefficients.end(), coefficients);
        return s->resultOf(Function::GET_EYE_CARE_COEFF_OLED);
    };
    closed.whitePointCalibrate = [s](auto* param) {
        std::copy(s->whiteGains.begin(), s->whiteGains.end(), &param->gainR);
        return s->resultOf(Function::WHITE_POINT_CALIBRATE);
    };
    closed.getAGTMLevel = [s](int lux) { return s->levelOf(lux); };
    closed.getAGTMCurveParams = [s](int level, int32_t* curve) {
        s->writeCurve(level, curve);
        return s->resultOf(Function::GET_AGTM_CURVE_PARAMS);
    };
}

void applyServices(const Settings& next, const Settings& last, simulator::Phone& phone) {
    if (next.composer != last.composer) phone.setComposerPresent(next.composer);
    phone.composer().setDisplayCount(next.displays);
    phone.composer().recover();
    phone.composer().refuseWith(static_cast<simulator::Composer::Result>(kRefusal));
    for (const auto& [operation, failure] : next.composerFailures) phone.composer().fail(operation, failure);
    if (next.sensors != last.sensors) phone.setSensorsPresent(next.sensors);
    phone.sensors().setDelivering(false);
    phone.sensors().setWithoutQueue(!next.queue);
    phone.sensors().recover();
    for (const auto& [operation, failure] : next.sensorFailures) phone.sensors().fail(operation, failure);
    phone.clock().refuseThreads(!next.threads);
}

}  // namespace

Settings::Settings()
    : panel{Kind::FILE, "a panel without a row\n"},
      whitePoint{Kind::FILE, "x=313,y=329\n"},
      cabc{Kind::FILE, "9999\n"},
      gains{1, 0.5F, 0.25F},
      coefficients{1, 0.125F, 0, 0.25F, 0.75F, 0, 0, 0, 0.5F},
      whiteGains{0.75F, 1, 0.5F} {
    calibrations[1].kind = calibrations[2].kind = Kind::MISSING;
    Calibration& complete = calibrations[0];
    complete.whitePoint = {0.5F, 0.1F, 0.2F, -0.1F, 0.9F, 0.05F, 0, 0.3F, 1};
    complete.colorCorrection = {1.25F, -0.2F, 0, 0.1F, 1, -0.1F, 0.3F, 0, 0.75F};
    complete.whitePointParams = {1, 2, 3, 4, 5, 6, 7, 8, 9};
    complete.endPoints = {0xC0FFEE, 0x0000FF};
    complete.eyeCare = {6500.9, 2700.2};
    for (int i = 0; i < 36; ++i) complete.eyeCare.push_back(i / 8.0);
}

int Settings::resultOf(ClosedFunction function) const {
    const auto found = results.find(function);
    return found == results.end() ? 0 : found->second;
}

int Settings::levelOf(int lux) const {
    return resultOf(ClosedFunction::GET_AGTM_LEVEL) + (lux < 1000 ? 2 : lux < 50000 ? lux / 2000 : 1);
}

void Settings::writeCurve(int level, int32_t* curve) const {
    if (curves) curve[static_cast<uint32_t>(level) % 256] = level;
}

void apply(const Settings& next, const Settings& last, simulator::Phone& phone) {
    applyServices(next, last, phone);
    applyClosed(next, last, phone.closed());
    constexpr std::pair<Node Settings::*, const char*> kNodes[] = {
        {&Settings::panel, kPanelPath}, {&Settings::whitePoint, kWhitePointPath}, {&Settings::cabc, kCabcPath}};
    for (const auto& [node, path] : kNodes) {
        const bool isSame = (next.*node).kind == (last.*node).kind && (next.*node).text == (last.*node).text;
        if (!isSame) put(textOf(next.*node), (last.*node).kind, path, phone.files());
    }
    for (size_t i = 0; i < kCalibrationPaths.size(); ++i) {
        if (isSame(next.calibrations[i], last.calibrations[i])) continue;
        put(textOf(next.calibrations[i]), last.calibrations[i].kind, kCalibrationPaths[i], phone.files());
    }
}

void apply(const Settings& first, simulator::Phone& phone) {
    Settings none = first;
    for (Node* const node : {&none.panel, &none.whitePoint, &none.cabc}) node->kind = Kind::MISSING;
    for (Calibration& calibration : none.calibrations) calibration.kind = Kind::MISSING;
    for (bool Settings::*const each : {&Settings::composer, &Settings::sensors, &Settings::curves})
        none.*each = !(first.*each);
    apply(first, none, phone);
}

}  // namespace model
