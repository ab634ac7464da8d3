// SPDX-License-Identifier: Apache-2.0
// The closed tone-curve library of the ambient-light adaptive display (libalad_algo_publish.so).
#pragma once

#include <cstdint>

extern "C" {

// The level of the tone curve for a light level in lux.
int getAGTMLevel(int lux);

// Writes the tone-curve parameters of a level to curve[0..255].
int getAGTMCurveParams(int level, int32_t* curve);
}
