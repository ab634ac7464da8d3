// SPDX-License-Identifier: Apache-2.0
// Conversions between the records of the display-control interface, of the composer and of the colour state.
#pragma once

#include <vendor/kov/hardware/composer_ext/1.0/types.h>
#include <vendor/kov/hardware/display_control/1.0/types.h>

#include <algorithm>
#include <iterator>

#include "color/TMat33.h"

namespace vendor::kov::hardware::display_control::V1_0::implementation {

namespace composer_types = ::vendor::kov::hardware::composer_ext::V1_0;

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

inline composer_types::ColorTransformMatrix toComposer(const TMat33<float>& matrix) {
    composer_types::ColorTransformMatrix result;
    result.elements = matrix.data();
    return result;
}

inline composer_types::ColorTransformMatrix toComposer(const ColorTransformMatrix& matrix) {
    composer_types::ColorTransformMatrix result;
    result.elements = matrix.elements.data();
    return result;
}

inline composer_types::GammaLut toComposer(const float* entries) {
    composer_types::GammaLut table;
    table.entries = entries;
    return table;
}

inline void copyMatrix(const float (&from)[TMat33<float>::kSize], TMat33<float>& to) {
    std::copy(std::begin(from), std::end(from), to.data());
}

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
