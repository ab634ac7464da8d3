// SPDX-License-Identifier: Apache-2.0
#include "bench/peers/FinalCtms.h"

namespace bench {

namespace {

Matrix product(const Matrix& a, const Matrix& b) {
    Matrix result;
    for (size_t i = 0; i < 3; ++i) {
        for (size_t j = 0; j < 3; ++j) {
            float sum = 0;
            for (size_t k = 0; k < 3; ++k) sum += a[3 * i + k] * b[3 * k + j];
            result[3 * i + j] = sum;
        }
    }
    return result;
}

float largestOutput(const Matrix& m) {
    constexpr float kCorners[7][3] = {{1, 1, 1}, {1, 1, 0}, {1, 0, 1}, {0, 1, 1}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
    float best = 0;
    for (const auto& corner : kCorners) {
        for (size_t i = 0; i < 3; ++i) {
            float out = 0;
            for (size_t k = 0; k < 3; ++k) out += m[3 * i + k] * corner[k];
            best = best > out ? best : out;
        }
    }
    return best;
}

}  // namespace

Matrix finalCtmByPlainLoops(const ColorManager& colors) {
    Matrix result = product(colors.eyeCareCtm, product(colors.unlimitedCtm, product(colors.wpcCtm, colors.ccmCtm)));
    const float largest = largestOutput(result);
    if (static_cast<double>(largest) > 1e-6) {
        for (size_t i = 0; i < Matrix::kSize; ++i) result[i] /= largest;
    }
    return result;
}

}  // namespace bench
