// SPDX-License-Identifier: Apache-2.0
#include <utils/RefBase.h>

#include <android/hidl/base/1.0/IBase.h>

namespace android {

RefBase::~RefBase() = default;

void RefBase::incStrong(const void* /*id*/) const {
    strongCount.fetch_add(1, std::memory_order_relaxed);
}

void RefBase::decStrong(const void* /*id*/) const {
    if (strongCount.fetch_sub(1, std::memory_order_acq_rel) == 1) delete this;
}

}  // namespace android

namespace android::hidl::base::V1_0 {

::android::hardware::Return<bool> IBase::linkToDeath(const sp<::android::hardware::hidl_death_recipient>& recipient,
                                                     uint64_t /*cookie*/) {
    return recipient != nullptr;
}

IBase::~IBase() = default;

}  // namespace android::hidl::base::V1_0
