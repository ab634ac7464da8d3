// The closed libraries as the tests have them.
#pragma once

#include <closed/displayppalgorithm.h>

#include <cstdint>
#include <functional>
#include <vector>

namespace fakes {

// What the closed libraries' functions answer and what they were given last; each call is journaled. One for the
// process, as the libraries are.
struct ClosedLibraries {
    int error = 0;                    // answered by the two colour-temperature getters
    std::vector<float> gains;         // written by getUnlimitedCTParams, so many as there are
    std::vector<float> coefficients;  // written by getEyeCareCoeffOled, so many as there are
    std::vector<float> whiteGains;    // written by WhitePointCalibrate, all three or none

    // Level and curve of the ambient light: a level per 1000 lux, and in a curve the level at both ends.
    std::function<int(int lux)> levelOf = [](int lux) { return lux / 1000; };
    std::function<void(int level, int32_t* curve)> writeCurve = [](int level, int32_t* curve) {
        curve[0] = curve[255] = level;
    };

    std::vector<double> eyeCareCoeffs;             // given to setEyeCareParamsOled
    android::WhitePointCalibrateParam whitePoint;  // given to WhitePointCalibrate
};

ClosedLibraries& closedLibraries();

}  // namespace fakes
