// SPDX-License-Identifier: Apache-2.0
#include <platform/Mutex.h>
#include <platform/Services.h>

#include <atomic>
#include <map>
#include <string>
#include <string_view>
#include <utility>

namespace platform {

namespace {

using Services = std::map<std::pair<std::string, std::string>, android::sp<IBase>>;  // by interface and instance

class Registry {
public:
    // Returns the replaced service. The caller destroys it without the lock: its destructor may use the registry.
    android::sp<IBase> add(const std::string& interfaceName, const std::string& instance,
                           const android::sp<IBase>& service) PLATFORM_EXCLUDES(mutex) {
        const Lock lock(mutex);
        return std::exchange(services[{interfaceName, instance}], service);
    }

    android::sp<IBase> find(std::string_view interfaceName, std::string_view instance) PLATFORM_EXCLUDES(mutex) {
        const Lock lock(mutex);
        const auto found = services.find({std::string(interfaceName), std::string(instance)});
        return found == services.end() ? nullptr : found->second;
    }

    // Returns the removed services, for the same reason.
    Services clear() PLATFORM_EXCLUDES(mutex) {
        const Lock lock(mutex);
        return std::exchange(services, {});
    }

private:
    Mutex mutex;
    Services services PLATFORM_GUARDED_BY(mutex);
};

std::atomic<bool> servicesRefused{false};

Registry& registry() {
    static Registry instance;
    return instance;
}

}  // namespace

android::status_t addService(const std::string& interfaceName, const std::string& instance,
                             const android::sp<IBase>& service) {
    if (service == nullptr || servicesRefused) return android::UNKNOWN_ERROR;
    const auto replaced = registry().add(interfaceName, instance, service);
    return android::OK;
}

android::sp<IBase> findService(std::string_view interfaceName, std::string_view instance) {
    return registry().find(interfaceName, instance);
}

void removeService(const std::string& interfaceName, const std::string& instance) {
    const auto removed = registry().add(interfaceName, instance, nullptr);
}

void clearServices() {
    const Services released = registry().clear();
}

void refuseServices(bool refused) {
    servicesRefused = refused;
}

}  // namespace platform
