// SPDX-License-Identifier: Apache-2.0
// The adapter between the display-control interface and the library.
#pragma once

#include <vendor/kov/hardware/display_control/1.0/IDisplayControl.h>

#include "service/DisplayControlImpl.h"

namespace vendor::kov::hardware::display_control::V1_0::implementation {

// Forwards each operation of the interface to the library's method of the same name; adds nothing. The caller owns the
// library, starts it, and keeps it alive while the adapter is in use.
class DisplayControl final : public IDisplayControl {
public:
    explicit DisplayControl(DisplayControlImpl& served) : library(served) {}

    Return<void> allocUserHandle(uint32_t value, allocUserHandle_cb callback) override;
    Return<Result> freeUserHandle(uint64_t userHandle) override;
    Return<void> getNumOfDisplay(uint64_t userHandle, getNumOfDisplay_cb callback) override;
    Return<void> getDisplayInfo(uint64_t userHandle, uint64_t display, getDisplayInfo_cb callback) override;
    Return<Result> setColorTransformMatrix(uint64_t userHandle, uint64_t display,
                                           const ColorTransformMatrix& matrix) override;
    Return<void> getColorTransformMatrix(uint64_t userHandle, uint64_t display,
                                         getColorTransformMatrix_cb callback) override;
    Return<Result> setColorTransformMatrix2(uint64_t userHandle, uint64_t display, const ColorTransformMatrix& first,
                                            const ColorTransformMatrix& last) override;
    Return<void> getColorTransformMatrix2(uint64_t userHandle, uint64_t display,
                                          getColorTransformMatrix2_cb callback) override;
    Return<Result> setGlobalGammaLut(uint64_t userHandle, uint64_t display, const GammaLut& table) override;
    Return<void> getGlobalGammaLut(uint64_t userHandle, uint64_t display, getGlobalGammaLut_cb callback) override;
    Return<Result> setGlobalDeGammaLut(uint64_t userHandle, uint64_t display, const GammaLut& table) override;
    Return<void> getGlobalDeGammaLut(uint64_t userHandle, uint64_t display, getGlobalDeGammaLut_cb callback) override;
    Return<Result> setGlobalGamma(uint64_t userHandle, uint64_t display, float exponent) override;
    Return<Result> exclusiveModeEnter(uint64_t userHandle, uint32_t value) override;
    Return<Result> exclusiveModeExit(uint64_t userHandle, uint32_t value) override;
    Return<Result> setAlad(uint64_t userHandle, uint64_t display, uint32_t enable) override;
    Return<int32_t> IsAladEnable(uint64_t userHandle, uint64_t display) override;
    Return<int32_t> setCabcSysNode(uint64_t userHandle, uint64_t display, int32_t level) override;
    Return<int32_t> setCabcMode(uint64_t userHandle, uint64_t display, int32_t mode) override;
    Return<Result> setUnlimitedCT(uint64_t userHandle, uint64_t display, int32_t level) override;
    Return<void> getUnlimitedCT(uint64_t userHandle, uint64_t display, getUnlimitedCT_cb callback) override;
    Return<Result> setEyeCareCT(uint64_t userHandle, uint64_t display, int32_t level) override;
    Return<void> getEyeCareCT(uint64_t userHandle, uint64_t display, getEyeCareCT_cb callback) override;
    Return<int32_t> setStandardMode(uint64_t userHandle, uint64_t display, int32_t value) override;
    Return<int32_t> setEnhanceScreenMode(uint64_t userHandle, uint64_t display, int32_t value) override;
    Return<int32_t> setSmartEnvironmentMode(uint64_t userHandle, uint64_t display, int32_t value) override;
    Return<int32_t> setFeature(uint64_t userHandle, uint64_t display, int32_t feature, int32_t value,
                               int32_t value2) override;
    Return<void> setMiscFeature(uint64_t userHandle, uint64_t display, int32_t feature, const hidl_vec<double>& values,
                                setMiscFeature_cb callback) override;
    Return<void> getMiscFeature(uint64_t userHandle, uint64_t display, int32_t feature,
                                getMiscFeature_cb callback) override;

private:
    DisplayControlImpl& library;
};

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
