// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cstring>

#include "bench/peers/FinalCtms.h"

namespace bench {

namespace {

// A row in a register; the fourth value is not looked at.
using Row = float __attribute__((vector_size(16)));
struct Rows {
    Row row[3];
};

Row all(float value) {
    return Row{value, value, value, value};
}

Row rowAt(const float* values) {
    Row row;
    memcpy(&row, values, sizeof row);
    return row;
}

Rows rowsOf(const Matrix& m) {
    const Row last = rowAt(m.data() + 5);  // a row at 6 would reach beyond the matrix
    return {{rowAt(m.data()), rowAt(m.data() + 3), __builtin_shufflevector(last, last, 1, 2, 3, 3)}};
}

Matrix matrixOf(const Rows& rows) {
    Matrix m;
    memcpy(m.data(), &rows.row[0], sizeof(Row));
    memcpy(m.data() + 3, &rows.row[1], sizeof(Row));
    memcpy(m.data() + 6, &rows.row[2], 3 * sizeof(float));
    return m;
}

Rows product(const Matrix& a, const Rows& b) {
    Rows result;
    for (size_t i = 0; i < 3; ++i) {
        result.row[i] = (all(a[3 * i]) * b.row[0] + all(a[3 * i + 1]) * b.row[1]) + all(a[3 * i + 2]) * b.row[2];
    }
    return result;
}

Row positive(Row row) {
    return row > all(0) ? row : all(0);
}

bool isFinite(const Rows& m) {
    const Row zeros = (m.row[0] * all(0) + m.row[1] * all(0)) + m.row[2] * all(0);
    return (zeros[0] + zeros[1]) + zeros[2] == 0;
}

// The three sums of rows at once, from the columns.
float largestOutput(const Rows& m) {
    const Row a = positive(m.row[0]);
    const Row b = positive(m.row[1]);
    const Row c = positive(m.row[2]);
    const Row ab = __builtin_shufflevector(a, b, 0, 4, 1, 5);
    const Row column0 = __builtin_shufflevector(ab, c, 0, 1, 4, 4);
    const Row column1 = __builtin_shufflevector(ab, c, 2, 3, 5, 5);
    const Row column2 = __builtin_shufflevector(__builtin_shufflevector(a, b, 2, 6, 2, 6), c, 0, 1, 6, 6);
    const Row sums = (column0 + column1) + column2;
    return std::max({sums[0], sums[1], sums[2]});
}

}  // namespace

Matrix finalCtmByHand(const ColorManager& colors) {
    Rows m = product(colors.eyeCareCtm, product(colors.unlimitedCtm, product(colors.wpcCtm, rowsOf(colors.ccmCtm))));
    for (Row& row : m.row) row += all(0);
    const float largest = isFinite(m) ? largestOutput(m) : ColorManager::maxRgb(matrixOf(m));
    if (static_cast<double>(largest) > 1e-6) {
        for (Row& row : m.row) row /= all(largest);
    }
    return matrixOf(m);
}

}  // namespace bench
