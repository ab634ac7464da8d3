// Carries matrices and results between the calibration, the colour state and the composer.
#pragma once

#include <vendor/kov/hardware/composer_ext/1.0/types.h>
#include <vendor/kov/hardware/display_control/1.0/types.h>

#include <algorithm>
#include <iterator>

#include "color/TMat33.h"
#include "service/DisplayControlImpl.h"

namespace vendor::kov::hardware::display_control::V1_0::implementation {

inline Result fromComposer(composer_types::Result result) {
    return static_cast<Result>(static_cast<int32_t>(result));
}

inline ColorTransformMatrix fromComposer(const composer_types::ColorTransformMatrix& matrix) {
    ColorTransformMatrix result;
    result.elements = matrix.elements.data();
    return result;
}

inline DisplayInfo fromComposer(const composer_types::DisplayInfo& info) {
    return {info.values, info.name};
}

inline void copyMatrix(const float (&from)[TMat33<float>::kSize], TMat33<float>& to) {
    std::copy(std::begin(from), std::end(from), to.data());
}

inline composer_types::ColorTransformMatrix toComposer(const TMat33<float>& matrix) {
    composer_types::ColorTransformMatrix result;
    std::copy_n(matrix.data(), result.elements.size(), result.elements.data());
    return result;
}

inline composer_types::ColorTransformMatrix toComposer(const ColorTransformMatrix& matrix) {
    composer_types::ColorTransformMatrix result;
    std::copy_n(matrix.elements.data(), result.elements.size(), result.elements.data());
    return result;
}

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
