// SPDX-License-Identifier: Apache-2.0
// The display composer's extension service.
#pragma once

#include <android/hidl/base/1.0/IBase.h>
#include <hidl/Status.h>
#include <platform/Services.h>
#include <vendor/kov/hardware/composer_ext/1.0/types.h>

#include <cstdint>
#include <functional>
#include <string>

namespace vendor::kov::hardware::composer_ext::V1_0 {

using ::android::sp;
using ::android::status_t;
using ::android::hardware::Return;
using ::android::hardware::Void;

// Displays are numbered from 0. Every callback is called once, before the operation returns. A colour transform is a
// pair of matrices, of which the composer applies first before last.
struct IComposerExt : public ::android::hidl::base::V1_0::IBase {
    static constexpr const char* descriptor = "vendor.kov.hardware.composer_ext@1.0::IComposerExt";

    // The count is valid only with Result 0.
    using getNumOfDisplay_cb = std::function<void(Result result, uint32_t count)>;
    virtual Return<void> getNumOfDisplay(getNumOfDisplay_cb callback) = 0;
    using getDisplayInfo_cb = std::function<void(Result result, const DisplayInfo& info)>;
    virtual Return<void> getDisplayInfo(uint64_t display, getDisplayInfo_cb callback) = 0;
    virtual Return<Result> setColorTransformMatrix(uint64_t display, const ColorTransformMatrix& first,
                                                   const ColorTransformMatrix& last) = 0;
    using getColorTransformMatrix_cb =
        std::function<void(Result result, const ColorTransformMatrix& first, const ColorTransformMatrix& last)>;
    virtual Return<void> getColorTransformMatrix(uint64_t display, getColorTransformMatrix_cb callback) = 0;
    virtual Return<void> reserved5() { return Void(); }
    virtual Return<void> reserved6() { return Void(); }
    virtual Return<Result> setGlobalGammaLut(uint64_t display, const GammaLut& table) = 0;
    using getGlobalGammaLut_cb = std::function<void(Result result, const GammaLut& table)>;
    virtual Return<void> getGlobalGammaLut(uint64_t display, getGlobalGammaLut_cb callback) = 0;
    virtual Return<Result> setGlobalDeGammaLut(uint64_t display, const GammaLut& table) = 0;
    using getGlobalDeGammaLut_cb = std::function<void(Result result, const GammaLut& table)>;
    virtual Return<void> getGlobalDeGammaLut(uint64_t display, getGlobalDeGammaLut_cb callback) = 0;
    // enable: 1 with the parameters of the tone curve, 0 with none to drop it.
    virtual Return<Result> setAladParams(uint64_t display, uint32_t enable, const hidl_vec<AladParamPair>& params) = 0;
    // enable: 1 to enter, 0 to leave.
    virtual Return<Result> setExclusiveMode(uint64_t display, uint32_t enable) = 0;

    // The service with that instance name, or null. There are no passthrough stubs: a request for one returns null.
    static sp<IComposerExt> getService(const std::string& serviceName = "default", bool getStub = false) {
        if (getStub) return nullptr;
        return static_cast<IComposerExt*>(platform::findService(descriptor, serviceName).get());
    }

    status_t registerAsService(const std::string& serviceName = "default") {
        return platform::addService(descriptor, serviceName, this);
    }
};

}  // namespace vendor::kov::hardware::composer_ext::V1_0
