// SPDX-License-Identifier: Apache-2.0
#include "alad/ToneCurveRamp.h"

#include "alad/LightFilter.h"

namespace vendor::kov::hardware::display_control::V1_0::implementation {

CurveAction actionFor(bool curveActive, int32_t meanLux) {
    if (meanLux < 0) return CurveAction::NONE;
    if (!curveActive) return meanLux > kBrightLux ? CurveAction::ACTIVATE : CurveAction::NONE;
    return meanLux >= kDimLux ? CurveAction::TRACK : CurveAction::DEACTIVATE;
}

Ramp rampUp(int32_t from, int32_t target) {
    return {int64_t{from} + 1, target, 1};
}

Ramp rampTo(int32_t from, int32_t target) {
    return target >= from ? rampUp(from, target) : Ramp{int64_t{from} - 1, target, -1};
}

Ramp rampDown(int32_t from, int32_t target) {
    return {from, target, -1};
}

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
