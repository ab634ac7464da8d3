// SPDX-License-Identifier: Apache-2.0
// The start of the service process.
#include "phone/Serve.h"

#include <vendor/kov/hardware/display_control/1.0/IDisplayControl.h>

#include "tests/PhoneTest.h"

namespace vendor::kov::hardware::display_control::V1_0::implementation {

class ServeTest : public PhoneTest {
protected:
    // Runs the process; returns the errors that it logs itself.
    Lines run() {
        happened();
        EXPECT_EQ(serve([this] { joined(); }, [this] { ++deaths; }), 1);
        return happened("log E serve");
    }

    std::function<void()> joined = [] { ADD_FAILURE() << "serves after a failed start"; };
    int deaths = 0;
};

TEST_F(ServeTest, ServesOnceStartedAndReportsTheComposersDeath) {
    uint32_t displays = 0;
    joined = [&] {
        const sp<IDisplayControl> client = IDisplayControl::getService();
        ASSERT_NE(client, nullptr);
        client->getNumOfDisplay(7, [&](Result, uint32_t count) { displays = count; });
        EXPECT_EQ(deaths, 0);
        phone.stopComposer();
    };
    phone.composer().setDisplayCount(2);
    EXPECT_EQ(run(), Lines());
    EXPECT_EQ(displays, 2U);
    EXPECT_EQ(deaths, 1);
}

TEST_F(ServeTest, EveryFailureToStartIsLogged) {
    phone.setComposerPresent(false);
    EXPECT_EQ(run(), Lines{"log E serve: no composer extension service"});

    phone.setComposerPresent(true);
    phone.composer().fail(simulator::ComposerOperation::GET_NUM_OF_DISPLAY, simulator::Failure::REFUSED);
    EXPECT_EQ(run(), Lines{"log E serve: init error -2"});

    phone.composer().recover();
    platform::refuseServices(true);
    EXPECT_EQ(run(), Lines{"log E serve: registerAsService error -2147483648"});
    platform::refuseServices(false);
    EXPECT_EQ(IDisplayControl::getService(), nullptr);

    phone.composer().stop();  // and is still registered
    EXPECT_EQ(run(), Lines{"log E serve: linkToDeath error"});
}

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
