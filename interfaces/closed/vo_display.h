// SPDX-License-Identifier: Apache-2.0
// The closed library of the unlimited colour temperature (vo_display.so).
#pragma once

// Sets the end points of the range, each a colour 0xRRGGBB, for the whole process.
int setParams(int warm, int cold);

// Writes the red, green and blue gain of a level to gains[0..2]. 0 on success, otherwise an error code.
int getUnlimitedCTParams(int level, float* gains);
