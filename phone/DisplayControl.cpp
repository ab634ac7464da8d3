// SPDX-License-Identifier: Apache-2.0
#include "phone/DisplayControl.h"

namespace vendor::kov::hardware::display_control::V1_0::implementation {

Return<void> DisplayControl::allocUserHandle(uint32_t value, allocUserHandle_cb callback) {
    return library.allocUserHandle(value, callback);
}

Return<Result> DisplayControl::freeUserHandle(uint64_t userHandle) {
    return library.freeUserHandle(userHandle);
}

Return<void> DisplayControl::getNumOfDisplay(uint64_t userHandle, getNumOfDisplay_cb callback) {
    return library.getNumOfDisplay(userHandle, callback);
}

Return<void> DisplayControl::getDisplayInfo(uint64_t userHandle, uint64_t display, getDisplayInfo_cb callback) {
    return library.getDisplayInfo(userHandle, display, callback);
}

Return<Result> DisplayControl::setColorTransformMatrix(uint64_t userHandle, uint64_t display,
                                                       const ColorTransformMatrix& matrix) {
    return library.setColorTransformMatrix(userHandle, display, matrix);
}

Return<void> DisplayControl::getColorTransformMatrix(uint64_t userHandle, uint64_t display,
                                                     getColorTransformMatrix_cb callback) {
    return library.getColorTransformMatrix(userHandle, display, callback);
}

Return<Result> DisplayControl::setColorTransformMatrix2(uint64_t userHandle, uint64_t display,
                                                        const ColorTransformMatrix& first,
                                                        const ColorTransformMatrix& last) {
    return library.setColorTransformMatrix2(userHandle, display, first, last);
}

Return<void> DisplayControl::getColorTransformMatrix2(uint64_t userHandle, uint64_t display,
                                                      getColorTransformMatrix2_cb callback) {
    return library.getColorTransformMatrix2(userHandle, display, callback);
}

Return<Result> DisplayControl::setGlobalGammaLut(uint64_t userHandle, uint64_t display, const GammaLut& table) {
    return library.setGlobalGammaLut(userHandle, display, table);
}

Return<void> DisplayControl::getGlobalGammaLut(uint64_t userHandle, uint64_t display, getGlobalGammaLut_cb callback) {
    return library.getGlobalGammaLut(userHandle, display, callback);
}

Return<Result> DisplayControl::setGlobalDeGammaLut(uint64_t userHandle, uint64_t display, const GammaLut& table) {
    return library.setGlobalDeGammaLut(userHandle, display, table);
}

Return<void> DisplayControl::getGlobalDeGammaLut(uint64_t userHandle, uint64_t display,
                                                 getGlobalDeGammaLut_cb callback) {
    return library.getGlobalDeGammaLut(userHandle, display, callback);
}

Return<Result> DisplayControl::setGlobalGamma(uint64_t userHandle, uint64_t display, float exponent) {
    return library.setGlobalGamma(userHandle, display, exponent);
}

Return<Result> DisplayControl::exclusiveModeEnter(uint64_t userHandle, uint32_t value) {
    return library.exclusiveModeEnter(userHandle, value);
}

Return<Result> DisplayControl::exclusiveModeExit(uint64_t userHandle, uint32_t value) {
    return library.exclusiveModeExit(userHandle, value);
}

Return<Result> DisplayControl::setAlad(uint64_t userHandle, uint64_t display, uint32_t enable) {
    return library.setAlad(userHandle, display, enable);
}

Return<int32_t> DisplayControl::IsAladEnable(uint64_t userHandle, uint64_t display) {
    return library.IsAladEnable(userHandle, display);
}

Return<int32_t> DisplayControl::setCabcSysNode(uint64_t userHandle, uint64_t display, int32_t level) {
    return library.setCabcSysNode(userHandle, display, level);
}

Return<int32_t> DisplayControl::setCabcMode(uint64_t userHandle, uint64_t display, int32_t mode) {
    return library.setCabcMode(userHandle, display, mode);
}

Return<Result> DisplayControl::setUnlimitedCT(uint64_t userHandle, uint64_t display, int32_t level) {
    return library.setUnlimitedCT(userHandle, display, level);
}

Return<void> DisplayControl::getUnlimitedCT(uint64_t userHandle, uint64_t display, getUnlimitedCT_cb callback) {
    return library.getUnlimitedCT(userHandle, display, callback);
}

Return<Result> DisplayControl::setEyeCareCT(uint64_t userHandle, uint64_t display, int32_t level) {
    return library.setEyeCareCT(userHandle, display, level);
}

Return<void> DisplayControl::getEyeCareCT(uint64_t userHandle, uint64_t display, getEyeCareCT_cb callback) {
    return library.getEyeCareCT(userHandle, display, callback);
}

Return<int32_t> DisplayControl::setStandardMode(uint64_t userHandle, uint64_t display, int32_t value) {
    return library.setStandardMode(userHandle, display, value);
}

Return<int32_t> DisplayControl::setEnhanceScreenMode(uint64_t userHandle, uint64_t display, int32_t value) {
    return library.setEnhanceScreenMode(userHandle, display, value);
}

Return<int32_t> DisplayControl::setSmartEnvironmentMode(uint64_t userHandle, uint64_t display, int32_t value) {
    return library.setSmartEnvironmentMode(userHandle, display, value);
}

Return<int32_t> DisplayControl::setFeature(uint64_t userHandle, uint64_t display, int32_t feature, int32_t value,
                                           int32_t value2) {
    return library.setFeature(userHandle, display, feature, value, value2);
}

Return<void> DisplayControl::setMiscFeature(uint64_t userHandle, uint64_t display, int32_t feature,
                                            const hidl_vec<double>& values, setMiscFeature_cb callback) {
    return library.setMiscFeature(userHandle, display, feature, values, callback);
}

Return<void> DisplayControl::getMiscFeature(uint64_t userHandle, uint64_t display, int32_t feature,
                                            getMiscFeature_cb callback) {
    return library.getMiscFeature(userHandle, display, feature, callback);
}

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
