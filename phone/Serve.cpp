// SPDX-License-Identifier: Apache-2.0
#include "phone/Serve.h"

#include <hidl/HidlSupport.h>
#include <platform/Log.h>
#include <utils/Errors.h>

#include <cinttypes>
#include <utility>

#include "phone/DisplayControl.h"

namespace vendor::kov::hardware::display_control::V1_0::implementation {

namespace {

class ComposerDeath final : public ::android::hardware::hidl_death_recipient {
public:
    explicit ComposerDeath(std::function<void()> action) : died(std::move(action)) {}

    void serviceDied(uint64_t /*cookie*/, const ::android::wp<::android::hidl::base::V1_0::IBase>& /*who*/) override {
        PLATFORM_LOG_ERROR("the composer died");
        died();
    }

private:
    const std::function<void()> died;
};

}  // namespace

int serve(const std::function<void()>& joinPool, const std::function<void()>& composerDied) {
    // Linked before init() connects, so that no death is missed. The link lasts as long as this reference.
    const sp<IComposerExt> composer = IComposerExt::getService();
    if (composer == nullptr) {
        PLATFORM_LOG_ERROR("no composer extension service");
        return 1;
    }
    if (!composer->linkToDeath(new ComposerDeath(composerDied), 0).withDefault(false)) {
        PLATFORM_LOG_ERROR("linkToDeath error");
        return 1;
    }

    DisplayControlImpl library;
    if (const int error = library.init(); error != 0) {
        PLATFORM_LOG_ERROR("init error %d", error);
        return 1;
    }

    const sp<DisplayControl> service = new DisplayControl(library);
    if (const ::android::status_t error = service->registerAsService(); error != ::android::OK) {
        PLATFORM_LOG_ERROR("registerAsService error %" PRId32, error);
        return 1;
    }
    PLATFORM_LOG_INFO("registered");
    joinPool();
    return 1;
}

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
