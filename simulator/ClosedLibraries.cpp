// SPDX-License-Identifier: Apache-2.0
#include "simulator/ClosedLibraries.h"

#include <closed/alad_algo_publish.h>
#include <closed/vo_display.h>

#include <algorithm>
#include <utility>

#include "simulator/closed/EyeCare.h"
#include "simulator/closed/ToneCurve.h"
#include "simulator/closed/WhitePoint.h"

namespace simulator {

namespace {

ClosedLibraries* phonesLibraries = nullptr;

template <typename Values, typename T>
int write(const std::optional<Values>& values, T* buffer, int errorWithoutValues) {
    if (!values) return errorWithoutValues;
    std::transform(values->begin(), values->end(), buffer, [](auto value) { return static_cast<T>(value); });
    return 0;
}

int writeWhitePointGains(::android::WhitePointCalibrateParam* param) {
    const float* const x = param->params;
    const float* const y = param->params + 3;
    return write(whitePointGains({{x[0], y[0]}, {x[1], y[1]}, {x[2], y[2]}}, {param->whiteX, param->whiteY}),
                 &param->gainR, kWhitePointImpossible);
}

}  // namespace

ClosedLibraries::ClosedLibraries(std::shared_ptr<Journal> events) : journal(std::move(events)) {
    setParams = [this](int warm, int cold) {
        const EndPoints given = {warm, cold};
        if (!areColors(given)) return kUnlimitedBadColor;
        const platform::Lock lock(mutex);
        endPoints = given;
        return 0;
    };
    getUnlimitedCTParams = [this](int level, float* gains) {
        const platform::Lock lock(mutex);
        if (!endPoints) return kUnlimitedNotConfigured;
        return write(unlimitedGains(*endPoints, level), gains, kUnlimitedBadLevel);
    };
    setEyeCareParamsOled = [this](EyeCareParams& params) {
        const int error = checkEyeCareParams(params);
        const platform::Lock lock(mutex);
        if (error == 0) eyeCare = params;
        return error;
    };
    getEyeCareCoeffOled = [this](int level, float* coefficients) {
        const platform::Lock lock(mutex);
        if (!eyeCare) return kEyeCareNotConfigured;
        return write(eyeCareMatrix(*eyeCare, level), coefficients, kEyeCareBadLevel);
    };
    getAGTMLevel = toneCurveLevel;
    getAGTMCurveParams = [](int level, int32_t* curve) {
        const ToneCurve& entries = toneCurve(level);
        std::copy(entries.begin(), entries.end(), curve);
        return 0;
    };
    whitePointCalibrate = writeWhitePointGains;
}

void ClosedLibraries::fail(ClosedFunction function, std::optional<int> result) {
    if (result) {
        failures[function] = *result;
    } else {
        failures.erase(function);
    }
}

template <typename Describe, typename Body>
int ClosedLibraries::serve(ClosedFunction function, Describe describe, const float* buffer, size_t floats, Body body) {
    const auto run = [&] {
        const auto failure = failures.find(function);
        return failure == failures.end() ? body(*this) : failure->second;
    };
    if (!journal->isObserved()) return run();
    ClosedCall call = describe();
    call.function = function;
    call.before.assign(buffer, buffer + floats);
    call.result = run();
    call.after.assign(buffer, buffer + floats);
    const int result = *call.result;
    journal->add(std::move(call));
    return result;
}

ClosedLibraries& ClosedLibraries::ofProcess() {
    static ClosedLibraries withoutPhone(std::make_shared<Journal>());
    return phonesLibraries == nullptr ? withoutPhone : *phonesLibraries;
}

void ClosedLibraries::setOfProcess(ClosedLibraries* libraries) {
    phonesLibraries = libraries;
}

}  // namespace simulator

using simulator::ClosedCall;
using simulator::ClosedFunction;
using simulator::ClosedLibraries;

namespace {

// Describes a call by its integers.
template <typename... Arguments>
auto with(Arguments... arguments) {
    return [=] { return ClosedCall{{}, {int64_t{arguments}...}}; };
}

}  // namespace

int setParams(int warm, int cold) {
    return ClosedLibraries::ofProcess().serve(ClosedFunction::SET_PARAMS, with(warm, cold), nullptr, 0,
                                              [=](auto& libraries) { return libraries.setParams(warm, cold); });
}

int getUnlimitedCTParams(int level, float* gains) {
    return ClosedLibraries::ofProcess().serve(
        ClosedFunction::GET_UNLIMITED_CT_PARAMS, with(level), gains, 3,
        [=](auto& libraries) { return libraries.getUnlimitedCTParams(level, gains); });
}

int setEyeCareParamsOled(EyeCareParams& params) {
    const auto describe = [&params] { return ClosedCall{{}, {params.maxCCT, params.minCCT}, params.coeffs}; };
    return ClosedLibraries::ofProcess().serve(
        ClosedFunction::SET_EYE_CARE_PARAMS_OLED, describe, nullptr, 0,
        [&params](auto& libraries) { return libraries.setEyeCareParamsOled(params); });
}

int getEyeCareCoeffOled(int level, float* coefficients) {
    return ClosedLibraries::ofProcess().serve(
        ClosedFunction::GET_EYE_CARE_COEFF_OLED, with(level), coefficients, 9,
        [=](auto& libraries) { return libraries.getEyeCareCoeffOled(level, coefficients); });
}

int getAGTMLevel(int lux) {
    return ClosedLibraries::ofProcess().serve(ClosedFunction::GET_AGTM_LEVEL, with(lux), nullptr, 0,
                                              [=](auto& libraries) { return libraries.getAGTMLevel(lux); });
}

int getAGTMCurveParams(int level, int32_t* curve) {
    return ClosedLibraries::ofProcess().serve(
        ClosedFunction::GET_AGTM_CURVE_PARAMS, with(level), nullptr, 0,
        [=](auto& libraries) { return libraries.getAGTMCurveParams(level, curve); });
}

namespace android {

DisplayPostProcessingAlgorithm::DisplayPostProcessingAlgorithm() {
    ClosedLibraries::ofProcess().note(ClosedFunction::CONSTRUCT_ALGORITHM);
}

DisplayPostProcessingAlgorithm::~DisplayPostProcessingAlgorithm() {
    ClosedLibraries::ofProcess().note(ClosedFunction::DESTROY_ALGORITHM);
}

int DisplayPostProcessingAlgorithm::WhitePointCalibrate(WhitePointCalibrateParam* param) {
    return ClosedLibraries::ofProcess().serve(ClosedFunction::WHITE_POINT_CALIBRATE, with(), &param->whiteX,
                                              sizeof *param / sizeof(float),
                                              [=](auto& libraries) { return libraries.whitePointCalibrate(param); });
}

}  // namespace android
