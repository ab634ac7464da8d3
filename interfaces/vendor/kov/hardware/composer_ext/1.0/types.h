// SPDX-License-Identifier: Apache-2.0
// Records of the composer extension. The first four have the same members as those of the display-control interface,
// but are separate types.
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

// A parameter of the ambient-light adaptive display, identified by key, and its values.
struct AladParamPair {
    int32_t key;
    hidl_vec<int64_t> values;
};

}  // namespace vendor::kov::hardware::composer_ext::V1_0
