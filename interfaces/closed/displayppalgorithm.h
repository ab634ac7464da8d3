// SPDX-License-Identifier: Apache-2.0
// The closed display post-processing library (libdisplayppalgorithm.so).
#pragma once

namespace android {

struct WhitePointCalibrateParam {
    float whiteX;     // CIE 1931 x of the panel's white
    float whiteY;     // CIE 1931 y of the panel's white
    float params[9];  // the panel's parameters, in the order of the calibration file
    float gainR;      // gains of the channels: 1 on entry; the library may overwrite them
    float gainG;
    float gainB;
};
static_assert(sizeof(WhitePointCalibrateParam) == 14 * sizeof(float), "shared with the closed library");

class DisplayPostProcessingAlgorithm {
public:
    DisplayPostProcessingAlgorithm();
    ~DisplayPostProcessingAlgorithm();

    // Writes the gains that calibrate the panel's white point into the record.
    int WhitePointCalibrate(WhitePointCalibrateParam* param);
};

}  // namespace android
