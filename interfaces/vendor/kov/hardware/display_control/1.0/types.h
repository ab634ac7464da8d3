// SPDX-License-Identifier: Apache-2.0
// Records of the served display-control interface.
#pragma once

#include <hidl/HidlSupport.h>

#include <cstdint>

namespace vendor::kov::hardware::display_control::V1_0 {

using ::android::hardware::hidl_array;
using ::android::hardware::hidl_string;

// The composer may return other values; they are passed on unchanged.
enum class Result : int32_t {
    OK = 0,
    BAD_DISPLAY = -3,
    FAILED = -5,
};

// The composer's description of one display. The composer defines what the values mean.
struct DisplayInfo {
    hidl_array<uint32_t, 3> values;
    hidl_string name;
};

// A 3x3 matrix by rows: element (row i, column j) at index 3i + j.
struct ColorTransformMatrix {
    hidl_array<float, 9> elements;
};

// A gamma or de-gamma table: entry i is the output for the normalised input level i / 4096.
struct GammaLut {
    hidl_array<float, 4096> entries;
};

}  // namespace vendor::kov::hardware::display_control::V1_0
