// SPDX-License-Identifier: Apache-2.0
// The display-control interface as clients call it.
#pragma once

#include <android/hidl/base/1.0/IBase.h>
#include <hidl/Status.h>
#include <platform/Services.h>
#include <vendor/kov/hardware/display_control/1.0/types.h>

#include <cstdint>
#include <functional>
#include <string>

namespace vendor::kov::hardware::display_control::V1_0 {

using ::android::sp;
using ::android::status_t;
using ::android::hardware::hidl_vec;
using ::android::hardware::Return;

// The operations in the order of the interface's .hal file, which numbers them for the transport. DisplayControlImpl.h
// says what each does. Every callback is called once, before the operation returns.
struct IDisplayControl : public ::android::hidl::base::V1_0::IBase {
    static constexpr const char* descriptor = "vendor.kov.hardware.display_control@1.0::IDisplayControl";

    using allocUserHandle_cb = std::function<void(Result result, uint64_t userHandle)>;
    virtual Return<void> allocUserHandle(uint32_t value, allocUserHandle_cb callback) = 0;
    virtual Return<Result> freeUserHandle(uint64_t userHandle) = 0;
    using getNumOfDisplay_cb = std::function<void(Result result, uint32_t count)>;
    virtual Return<void> getNumOfDisplay(uint64_t userHandle, getNumOfDisplay_cb callback) = 0;
    using getDisplayInfo_cb = std::function<void(Result result, const DisplayInfo& info)>;
    virtual Return<void> getDisplayInfo(uint64_t userHandle, uint64_t display, getDisplayInfo_cb callback) = 0;

    virtual Return<Result> setColorTransformMatrix(uint64_t userHandle, uint64_t display,
                                                   const ColorTransformMatrix& matrix) = 0;
    using getColorTransformMatrix_cb = std::function<void(Result result, const ColorTransformMatrix& first)>;
    virtual Return<void> getColorTransformMatrix(uint64_t userHandle, uint64_t display,
                                                 getColorTransformMatrix_cb callback) = 0;
    virtual Return<Result> setColorTransformMatrix2(uint64_t userHandle, uint64_t display,
                                                    const ColorTransformMatrix& first,
                                                    const ColorTransformMatrix& last) = 0;
    using getColorTransformMatrix2_cb =
        std::function<void(Result result, const ColorTransformMatrix& first, const ColorTransformMatrix& last)>;
    virtual Return<void> getColorTransformMatrix2(uint64_t userHandle, uint64_t display,
                                                  getColorTransformMatrix2_cb callback) = 0;

    virtual Return<Result> setGlobalGammaLut(uint64_t userHandle, uint64_t display, const GammaLut& table) = 0;
    using getGlobalGammaLut_cb = std::function<void(Result result, const GammaLut& table)>;
    virtual Return<void> getGlobalGammaLut(uint64_t userHandle, uint64_t display, getGlobalGammaLut_cb callback) = 0;
    virtual Return<Result> setGlobalDeGammaLut(uint64_t userHandle, uint64_t display, const GammaLut& table) = 0;
    using getGlobalDeGammaLut_cb = std::function<void(Result result, const GammaLut& table)>;
    virtual Return<void> getGlobalDeGammaLut(uint64_t userHandle, uint64_t display,
                                             getGlobalDeGammaLut_cb callback) = 0;
    virtual Return<Result> setGlobalGamma(uint64_t userHandle, uint64_t display, float exponent) = 0;

    virtual Return<Result> exclusiveModeEnter(uint64_t userHandle, uint32_t value) = 0;
    virtual Return<Result> exclusiveModeExit(uint64_t userHandle, uint32_t value) = 0;

    virtual Return<Result> setAlad(uint64_t userHandle, uint64_t display, uint32_t enable) = 0;
    virtual Return<int32_t> IsAladEnable(uint64_t userHandle, uint64_t display) = 0;

    virtual Return<int32_t> setCabcSysNode(uint64_t userHandle, uint64_t display, int32_t level) = 0;
    virtual Return<int32_t> setCabcMode(uint64_t userHandle, uint64_t display, int32_t mode) = 0;

    virtual Return<Result> setUnlimitedCT(uint64_t userHandle, uint64_t display, int32_t level) = 0;
    using getUnlimitedCT_cb = std::function<void(Result result, int32_t level)>;
    virtual Return<void> getUnlimitedCT(uint64_t userHandle, uint64_t display, getUnlimitedCT_cb callback) = 0;
    virtual Return<Result> setEyeCareCT(uint64_t userHandle, uint64_t display, int32_t level) = 0;
    using getEyeCareCT_cb = std::function<void(Result result, int32_t level)>;
    virtual Return<void> getEyeCareCT(uint64_t userHandle, uint64_t display, getEyeCareCT_cb callback) = 0;

    virtual Return<int32_t> setStandardMode(uint64_t userHandle, uint64_t display, int32_t value) = 0;
    virtual Return<int32_t> setEnhanceScreenMode(uint64_t userHandle, uint64_t display, int32_t value) = 0;
    virtual Return<int32_t> setSmartEnvironmentMode(uint64_t userHandle, uint64_t display, int32_t value) = 0;

    virtual Return<int32_t> setFeature(uint64_t userHandle, uint64_t display, int32_t feature, int32_t value,
                                       int32_t value2) = 0;
    using setMiscFeature_cb = std::function<void(Result result, const hidl_vec<double>& answers)>;
    virtual Return<void> setMiscFeature(uint64_t userHandle, uint64_t display, int32_t feature,
                                        const hidl_vec<double>& values, setMiscFeature_cb callback) = 0;
    using getMiscFeature_cb = std::function<void(Result result, const hidl_vec<double>& answers)>;
    virtual Return<void> getMiscFeature(uint64_t userHandle, uint64_t display, int32_t feature,
                                        getMiscFeature_cb callback) = 0;

    // The service of that instance name, or null. There are no passthrough stubs: asking for one gives null.
    static sp<IDisplayControl> getService(const std::string& serviceName = "default", bool getStub = false) {
        if (getStub) return nullptr;
        return static_cast<IDisplayControl*>(platform::findService(descriptor, serviceName).get());
    }

    status_t registerAsService(const std::string& serviceName = "default") {
        return platform::addService(descriptor, serviceName, this);
    }
};

}  // namespace vendor::kov::hardware::display_control::V1_0
