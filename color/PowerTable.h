// Tables of powers.
#pragma once

#include <cstddef>

namespace vendor::kov::hardware::display_control::V1_0::implementation {

constexpr size_t kPowerTable = 4096;  // entries

// Entry i becomes (i / 4096) ^ exponent for any exponent: the value of pow in double precision, rounded once.
void fillPowerTable(float* entries, float exponent);

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
