#include <platform/Mutex.h>
#include <platform/Services.h>

#include <map>
#include <string>
#include <utility>

namespace platform {

namespace {

using Names = std::pair<std::string, std::string>;  // interface, instance
using Services = std::map<Names, android::sp<IBase>>;

class Registry {
public:
    void add(const Names& names, const android::sp<IBase>& service) PLATFORM_EXCLUDES(mutex) {
        const Lock lock(mutex);
        services[names] = service;
    }

    android::sp<IBase> find(const Names& names) PLATFORM_EXCLUDES(mutex) {
        const Lock lock(mutex);
        const auto found = services.find(names);
        return found == services.end() ? nullptr : found->second;
    }

    // What it held; destroyed by the caller, without the lock, for a service may use the registry when it ends.
    Services clear() PLATFORM_EXCLUDES(mutex) {
        const Lock lock(mutex);
        return std::exchange(services, {});
    }

private:
    Mutex mutex;
    Services services PLATFORM_GUARDED_BY(mutex);
};

Registry& registry() {
    static Registry instance;
    return instance;
}

}  // namespace

android::status_t addService(const std::string& interfaceName, const std::string& instance,
                             const android::sp<IBase>& service) {
    if (service == nullptr) return android::UNKNOWN_ERROR;
    registry().add({interfaceName, instance}, service);
    return android::OK;
}

android::sp<IBase> findService(const std::string& interfaceName, const std::string& instance) {
    return registry().find({interfaceName, instance});
}

void clearServices() {
    const Services released = registry().clear();
}

}  // namespace platform
