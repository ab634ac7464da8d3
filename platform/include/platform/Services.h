// SPDX-License-Identifier: Apache-2.0
// The registry behind every interface's getService and registerAsService. Any thread may call these.
#pragma once

#include <string>
#include <string_view>

#include <android/hidl/base/1.0/IBase.h>
#include <utils/Errors.h>
#include <utils/StrongPointer.h>

namespace platform {

using android::hidl::base::V1_0::IBase;

// Publishes service under its interface's name and an instance name; replaces an earlier one. Returns UNKNOWN_ERROR if
// service is null or services are refused.
android::status_t addService(const std::string& interfaceName, const std::string& instance,
                             const android::sp<IBase>& service);

// Returns the service published under both names, or null.
android::sp<IBase> findService(std::string_view interfaceName, std::string_view instance);

// Removes the service published under both names, if there is one. References held elsewhere stay valid.
void removeService(const std::string& interfaceName, const std::string& instance);

// Removes every service from the registry. References held elsewhere stay valid.
void clearServices();

// While refused, addService publishes nothing, as on a phone whose manifest or policy does not name the service.
void refuseServices(bool refused);

}  // namespace platform
