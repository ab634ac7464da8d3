// SPDX-License-Identifier: Apache-2.0
// Records of the composer extension. The first four carry the same as those of the display-control interface, as types
// of their own.
#pragma once

#include <hidl/HidlSupport.h>

#include <cstdint>

namespace vendor::kov::hardware::composer_ext::V1_0 {

using ::android::hardware::hidl_array;
using ::android::hardware::hidl_string;
using ::android::hardware::hidl_vec;

enum class Result : int32_t {
    OK = 0,
    BAD_DISPLAY = -3,
    FAILED = -5,
};

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

// One parameter of the ambient-light adaptive display: key says which, values are what it is set to.
struct AladParamPair {
    int32_t key;
    hidl_vec<int64_t> values;
};

}  // namespace vendor::kov::hardware::composer_ext::V1_0
