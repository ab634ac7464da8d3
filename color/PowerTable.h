// SPDX-License-Identifier: Apache-2.0
// Tables of powers.
#pragma once

#include <cstddef>

namespace vendor::kov::hardware::display_control::V1_0::implementation {

constexpr size_t kPowerTable = 4096;  // entries

// Sets entries[i] to (i / 4096) ^ exponent, for any exponent: pow in double precision, rounded to float.
void fillPowerTable(float* entries, float exponent);

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
