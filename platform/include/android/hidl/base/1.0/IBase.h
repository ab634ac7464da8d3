// SPDX-License-Identifier: Apache-2.0
// Base of every interface that is looked up by name or called across the transport.
#pragma once

#include <utils/RefBase.h>

namespace android::hidl::base::V1_0 {

struct IBase : virtual public RefBase {
protected:
    ~IBase() override;
};

}  // namespace android::hidl::base::V1_0
