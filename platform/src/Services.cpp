#include <platform/Services.h>

#include <map>
#include <mutex>
#include <utility>

namespace platform {

namespace {

struct Registry {
    std::mutex mutex;
    std::map<std::pair<std::string, std::string>, android::sp<IBase>> services;  // guarded by mutex
};

Registry& registry() {
    static Registry instance;
    return instance;
}

}  // namespace

android::status_t addService(const std::string& interfaceName, const std::string& instance,
                             const android::sp<IBase>& service) {
    if (service == nullptr) return android::UNKNOWN_ERROR;
    const std::lock_guard lock(registry().mutex);
    registry().services[{interfaceName, instance}] = service;
    return android::OK;
}

android::sp<IBase> findService(const std::string& interfaceName, const std::string& instance) {
    const std::lock_guard lock(registry().mutex);
    const auto found = registry().services.find({interfaceName, instance});
    return found == registry().services.end() ? nullptr : found->second;
}

void clearServices() {
    decltype(Registry::services) released;  // destroyed after the lock: a service may use the registry when it ends
    const std::lock_guard lock(registry().mutex);
    released.swap(registry().services);
}

}  // namespace platform
