#include "tests/fakes/ClosedLibraries.h"

#include <closed/alad_algo_publish.h>
#include <closed/vo_display.h>
#include <closed/voeyecare.h>

#include <algorithm>
#include <cstdio>

#include "tests/fakes/Journal.h"

namespace fakes {

ClosedLibraries& closedLibraries() {
    static ClosedLibraries libraries;
    return libraries;
}

namespace {

int answerLevel(const char* call, int level, float* buffer, size_t size, const std::vector<float>& values) {
    journal::add(std::string("closed ") + call + "(" + std::to_string(level) + ", " + text(buffer, size) + ")");
    std::copy(values.begin(), values.end(), buffer);
    return closedLibraries().error;
}

}  // namespace

}  // namespace fakes

using fakes::closedLibraries;
namespace journal = fakes::journal;

int setParams(int warm, int cold) {
    char line[64];
    snprintf(line, sizeof line, "closed setParams(%X, %X)", static_cast<unsigned>(warm), static_cast<unsigned>(cold));
    journal::add(line);
    return -1;  // nobody looks at it
}

int getUnlimitedCTParams(int level, float* gains) {
    return fakes::answerLevel("getUnlimitedCTParams", level, gains, 3, closedLibraries().gains);
}

int setEyeCareParamsOled(EyeCareParams& params) {
    closedLibraries().eyeCareCoeffs = params.coeffs;
    journal::add("closed setEyeCareParamsOled(" + std::to_string(params.maxCCT) + ", " + std::to_string(params.minCCT) +
                 ")");
    return -1;  // nobody looks at it
}

int getEyeCareCoeffOled(int level, float* coefficients) {
    return fakes::answerLevel("getEyeCareCoeffOled", level, coefficients, 9, closedLibraries().coefficients);
}

int getAGTMLevel(int lux) {
    return closedLibraries().levelOf(lux);
}

int getAGTMCurveParams(int level, int32_t* curve) {
    closedLibraries().writeCurve(level, curve);
    return -1;  // nobody looks at it
}

namespace android {

DisplayPostProcessingAlgorithm::DisplayPostProcessingAlgorithm() {
    journal::add("closed algorithm made");
}

DisplayPostProcessingAlgorithm::~DisplayPostProcessingAlgorithm() {
    journal::add("closed algorithm gone");
}

int DisplayPostProcessingAlgorithm::WhitePointCalibrate(WhitePointCalibrateParam* param) {
    closedLibraries().whitePoint = *param;
    journal::add("closed WhitePointCalibrate");
    if (const auto& gains = closedLibraries().whiteGains; gains.size() == 3) {
        param->gainR = gains[0];
        param->gainG = gains[1];
        param->gainB = gains[2];
    }
    return -1;  // nobody looks at it
}

}  // namespace android
