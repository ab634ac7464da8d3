// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <glm/glm.hpp>
#include <glm/gtc/type_ptr.hpp>

#include "bench/peers/FinalCtms.h"

namespace bench {

namespace {

// glm's matrices are columns: what is read here is the transposed matrix, and its products go the other way round.
glm::mat3 transposed(const Matrix& m) {
    return glm::make_mat3(m.data());
}

float largestOutput(const glm::mat3& m) {
    constexpr float kCorners[7][3] = {{1, 1, 1}, {1, 1, 0}, {1, 0, 1}, {0, 1, 1}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
    float best = 0;
    for (const auto& [r, g, b] : kCorners) {
        const glm::vec3 out = glm::vec3(r, g, b) * m;
        best = std::max({best, out.x, out.y, out.z});
    }
    return best;
}

}  // namespace

Matrix finalCtmByGlm(const ColorManager& colors) {
    glm::mat3 composed = ((transposed(colors.ccmCtm) * transposed(colors.wpcCtm)) * transposed(colors.unlimitedCtm)) *
                         transposed(colors.eyeCareCtm);
    const float largest = largestOutput(composed);
    if (static_cast<double>(largest) > 1e-6) composed /= largest;
    Matrix result;
    std::copy_n(glm::value_ptr(composed), Matrix::kSize, result.data());
    return result;
}

}  // namespace bench
