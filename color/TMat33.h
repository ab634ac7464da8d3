// SPDX-License-Identifier: Apache-2.0
// 3x3 matrix of the colour state.
#pragma once

#include <array>
#include <cstddef>

namespace vendor::kov::hardware::display_control::V1_0::implementation {

// Nine elements by rows; element (row i, column j) at index 3i + j:
//
//     | m[0] m[1] m[2] |   | r |
//     | m[3] m[4] m[5] | * | g |
//     | m[6] m[7] m[8] |   | b |
template <typename T>
class TMat33 {
public:
    static constexpr size_t kSize = 9;

    constexpr TMat33() : elements{1, 0, 0, 0, 1, 0, 0, 0, 1} {}

    constexpr T& operator[](size_t index) { return elements[index]; }
    constexpr const T& operator[](size_t index) const { return elements[index]; }

    constexpr T* data() { return elements.data(); }
    constexpr const T* data() const { return elements.data(); }

private:
    std::array<T, kSize> elements;
};

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
