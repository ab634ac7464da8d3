// SPDX-License-Identifier: Apache-2.0
// The start of the service process.
#include "phone/Serve.h"

#include <vendor/kov/hardware/display_control/1.0/IDisplayControl.h>

#include "tests/ServiceTest.h"

namespace vendor::kov::hardware::display_control::V1_0::implementation {

namespace {

using ::android::hardware::hidl_death_recipient;
using fakes::Fault;
using ::testing::ElementsAre;

// A composer in a process of its own, which can die.
struct MortalComposer : fakes::FakeComposer {
    Return<bool> linkToDeath(const sp<hidl_death_recipient>& linked, uint64_t number) override {
        if (isDead) return ::android::hardware::Status::fromStatusT(::android::DEAD_OBJECT);
        recipient = linked;
        cookie = number;
        return true;
    }
    void die() { recipient->serviceDied(cookie, {}); }

    bool isDead = false;
    sp<hidl_death_recipient> recipient;
    uint64_t cookie = 0;
};

}  // namespace

class ServeTest : public PhoneTest {
protected:
    ServeTest() { composer->registerAsService(); }
    ~ServeTest() override { platform::clearServices(); }

    int run() {
        return serve([this] { joined(); }, [this] { ++deaths; });
    }

    static Lines errors() {
        Lines lines = logLines();
        lines.erase(std::remove_if(lines.begin(), lines.end(),
                                   [](const std::string& line) { return line.rfind("log E serve", 0) != 0; }),
                    lines.end());
        return lines;
    }

    const sp<MortalComposer> composer = new MortalComposer;
    std::function<void()> joined = [] { ADD_FAILURE() << "serves after a failed start"; };
    int deaths = 0;
};

TEST_F(ServeTest, ServesOnceStartedAndReportsTheComposersDeath) {
    bool served = false;
    joined = [this, &served] {
        const sp<IDisplayControl> client = IDisplayControl::getService();
        ASSERT_NE(client, nullptr);
        client->getNumOfDisplay(7, [&served](Result, uint32_t count) { served = count == 2; });
        EXPECT_EQ(deaths, 0);
        composer->die();
    };
    EXPECT_EQ(run(), 1);
    EXPECT_TRUE(served);
    EXPECT_EQ(deaths, 1);
}

TEST_F(ServeTest, EveryFailureToStartIsLogged) {
    platform::clearServices();
    EXPECT_EQ(run(), 1);
    EXPECT_THAT(errors(), ElementsAre("log E serve: no composer extension service"));

    composer->registerAsService();
    composer->isDead = true;
    EXPECT_EQ(run(), 1);
    EXPECT_THAT(errors(), ElementsAre("log E serve: linkToDeath error"));

    composer->isDead = false;
    composer->fault("getNumOfDisplay", Fault::REFUSES);
    EXPECT_EQ(run(), 1);
    EXPECT_THAT(errors(), ElementsAre("log E serve: init error -2"));

    composer->fault("getNumOfDisplay", Fault::NONE);
    platform::refuseServices(true);
    EXPECT_EQ(run(), 1);
    platform::refuseServices(false);
    EXPECT_THAT(errors(), ElementsAre("log E serve: registerAsService error -2147483648"));
    EXPECT_EQ(IDisplayControl::getService(), nullptr);
}

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
