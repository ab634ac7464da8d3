// SPDX-License-Identifier: Apache-2.0
// The closed library of the eye-care colour temperature (libvoeyecare.so).
#pragma once

#include <cstdint>
#include <vector>

struct EyeCareParams {
    std::vector<double> coeffs;  // exactly 36, in the order of the calibration file
    int32_t maxCCT;              // kelvin
    int32_t minCCT;              // kelvin
};

// Sets the parameters of the range for the whole process.
int setEyeCareParamsOled(EyeCareParams& params);

// Writes the 3x3 matrix of a level, by rows, to coefficients[0..8]. 0 on success, otherwise an error code.
int getEyeCareCoeffOled(int level, float* coefficients);
