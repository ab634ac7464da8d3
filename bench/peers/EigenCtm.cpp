// SPDX-License-Identifier: Apache-2.0
#include <Eigen/Core>

#include "bench/peers/FinalCtms.h"

namespace bench {

namespace {

using Matrix3 = Eigen::Matrix<float, 3, 3, Eigen::RowMajor>;

Eigen::Map<const Matrix3> view(const Matrix& m) {
    return Eigen::Map<const Matrix3>(m.data());
}

Eigen::Matrix<float, 3, 7> corners() {
    Eigen::Matrix<float, 3, 7> columns;
    columns << 1, 1, 1, 0, 1, 0, 0,  //
        1, 1, 0, 1, 0, 1, 0,         //
        1, 0, 1, 1, 0, 0, 1;
    return columns;
}

}  // namespace

Matrix finalCtmByEigen(const ColorManager& colors) {
    static const Eigen::Matrix<float, 3, 7> kCorners = corners();
    const Matrix3 corrected = view(colors.wpcCtm) * view(colors.ccmCtm);
    const Matrix3 unlimited = view(colors.unlimitedCtm) * corrected;
    Matrix3 composed = view(colors.eyeCareCtm) * unlimited;
    const float largest = (composed * kCorners).maxCoeff();
    if (static_cast<double>(largest) > 1e-6) composed /= largest;
    Matrix result;
    Eigen::Map<Matrix3>(result.data()) = composed;
    return result;
}

}  // namespace bench
