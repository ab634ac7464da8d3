// SPDX-License-Identifier: Apache-2.0
// Base of every interface that is looked up by name or called across the transport.
#pragma once

#include <cstdint>

#include <hidl/HidlSupport.h>
#include <hidl/Status.h>
#include <utils/RefBase.h>
#include <utils/StrongPointer.h>

namespace android::hidl::base::V1_0 {

struct IBase : virtual public RefBase {
    // Calls recipient when the process of this object ends. Keep this object: releasing it ends the link. Returns
    // whether the link is made. An object of the calling process never reports its death.
    virtual ::android::hardware::Return<bool> linkToDeath(
        const sp<::android::hardware::hidl_death_recipient>& recipient, uint64_t cookie);

protected:
    ~IBase() override;
};

}  // namespace android::hidl::base::V1_0
