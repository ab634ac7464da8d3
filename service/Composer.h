// Carries records and answers across the border to the composer.
#pragma once

#include <hidl/Status.h>
#include <vendor/kov/hardware/composer_ext/1.0/types.h>
#include <vendor/kov/hardware/display_control/1.0/types.h>

#include <algorithm>

#include "color/TMat33.h"

namespace vendor::kov::hardware::display_control::V1_0::implementation {

namespace composer_types = ::vendor::kov::hardware::composer_ext::V1_0;

inline Result fromComposer(composer_types::Result result) {
    return static_cast<Result>(static_cast<int32_t>(result));
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

// For an answer that is not examined: a failed transport is the same as an answer that was dropped.
template <typename T>
void dropAnswer(const ::android::hardware::Return<T>& answer) {
    answer.isOk();
}

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
