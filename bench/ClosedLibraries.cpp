// SPDX-License-Identifier: Apache-2.0
// The closed libraries, doing nothing: what the library itself costs is measured.
#include <closed/alad_algo_publish.h>
#include <closed/displayppalgorithm.h>
#include <closed/vo_display.h>
#include <closed/voeyecare.h>

int setParams(int /*warm*/, int /*cold*/) {
    return 0;
}
int getUnlimitedCTParams(int /*level*/, float* /*gains*/) {
    return 0;
}
int setEyeCareParamsOled(EyeCareParams& /*params*/) {
    return 0;
}
int getEyeCareCoeffOled(int /*level*/, float* /*coefficients*/) {
    return 0;
}
int getAGTMLevel(int /*lux*/) {
    return 0;
}
int getAGTMCurveParams(int /*level*/, int32_t* /*curve*/) {
    return 0;
}

namespace android {

DisplayPostProcessingAlgorithm::DisplayPostProcessingAlgorithm() = default;
DisplayPostProcessingAlgorithm::~DisplayPostProcessingAlgorithm() = default;
int DisplayPostProcessingAlgorithm::WhitePointCalibrate(WhitePointCalibrateParam* /*param*/) {
    return 0;
}

}  // namespace android
