// The registry behind every interface's getService and registerAsService. Any thread may call these.
#pragma once

#include <string>
#include <string_view>

#include <android/hidl/base/1.0/IBase.h>
#include <utils/Errors.h>
#include <utils/StrongPointer.h>

namespace platform {

using android::hidl::base::V1_0::IBase;

// Publishes service under its interface's name and an instance name, in place of an earlier one.
// UNKNOWN_ERROR when service is null.
android::status_t addService(const std::string& interfaceName, const std::string& instance,
                             const android::sp<IBase>& service);

// The service last published under both names, or null. Takes no memory.
android::sp<IBase> findService(std::string_view interfaceName, std::string_view instance);

// Forgets every service; who holds one keeps it.
void clearServices();

}  // namespace platform
