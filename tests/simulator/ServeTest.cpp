// SPDX-License-Identifier: Apache-2.0
// The start of the service process.
#include "phone/Serve.h"

#include <gmock/gmock.h>
#include <vendor/kov/hardware/display_control/1.0/IDisplayControl.h>

#include "simulator/Phone.h"

namespace simulator {

namespace {

using ::testing::ElementsAre;
using vendor::kov::hardware::display_control::V1_0::IDisplayControl;
using vendor::kov::hardware::display_control::V1_0::Result;

class ServeTest : public ::testing::Test {
protected:
    ServeTest() {
        phone.composer().setDisplayCount(2);
        phone.observe([this](const Event& event) {
            const auto* const line = std::get_if<LogLine>(&event.what);
            if (line != nullptr && line->function == "serve" && line->priority == ANDROID_LOG_ERROR)
                errors.push_back(line->message);
        });
    }

    // Returns what the start logs as errors.
    std::vector<std::string> run() {
        errors.clear();
        EXPECT_EQ(vendor::kov::hardware::display_control::V1_0::implementation::serve(joined, [this] { ++deaths; }), 1);
        return errors;
    }

    Phone phone{Phone::Start::SAMPLE};
    std::function<void()> joined = [] { ADD_FAILURE() << "serves after a failed start"; };
    int deaths = 0;

private:
    std::vector<std::string> errors;
};

TEST_F(ServeTest, ServesOnceStartedAndReportsTheComposersDeath) {
    uint32_t displays = 0;
    joined = [this, &displays] {
        EXPECT_EQ(deaths, 0);
        phone.stopComposer();
        EXPECT_EQ(deaths, 1);
        const auto client = IDisplayControl::getService();
        ASSERT_NE(client, nullptr) << "the service outlives the composer";
        client->getNumOfDisplay(7, [&displays](Result, uint32_t count) { displays = count; });
    };
    run();
    EXPECT_EQ(displays, 2);
}

TEST_F(ServeTest, EveryFailureToStartIsLogged) {
    phone.setComposerPresent(false);
    EXPECT_THAT(run(), ElementsAre("no composer extension service"));

    phone.setComposerPresent(true);
    phone.composer().fail(ComposerOperation::GET_NUM_OF_DISPLAY, Failure::REFUSED);
    EXPECT_THAT(run(), ElementsAre("init error -2"));

    phone.composer().recover();
    platform::refuseServices(true);
    EXPECT_THAT(run(), ElementsAre("registerAsService error -2147483648"));
    platform::refuseServices(false);
    EXPECT_EQ(IDisplayControl::getService(), nullptr);

    phone.composer().stop();  // getService still finds it
    EXPECT_THAT(run(), ElementsAre("linkToDeath error"));
}

}  // namespace

}  // namespace simulator
