// SPDX-License-Identifier: Apache-2.0
// The final matrix of a colour state as others compute it.
#pragma once

#include "color/ColorManager.h"

namespace bench {

using vendor::kov::hardware::display_control::V1_0::implementation::ColorManager;
using Matrix = vendor::kov::hardware::display_control::V1_0::implementation::TMat33<float>;

// Loops over i, j and k and over the corners, compiled without vectorising.
Matrix finalCtmByPlainLoops(const ColorManager& colors);
Matrix finalCtmByEigen(const ColorManager& colors);
Matrix finalCtmByGlm(const ColorManager& colors);
// A register a row, by hand; the same bits as the library's for finite matrices.
Matrix finalCtmByHand(const ColorManager& colors);

}  // namespace bench
