// SPDX-License-Identifier: Apache-2.0
#include "tools/session/ServedLibrary.h"

namespace simulator {

using display_control::IDisplayControl;

ServedLibrary::ServedLibrary() {
    const ::android::sp<IDisplayControl> adapter = new display_control::implementation::DisplayControl(served);
    adapter->registerAsService();
    service = IDisplayControl::getService();
}

ServedLibrary::~ServedLibrary() {
    platform::removeService(IDisplayControl::descriptor, "default");
}

}  // namespace simulator
