// SPDX-License-Identifier: Apache-2.0
// User handles, the order of effects within an operation, and the end of the service.
#include <android/log.h>

#include <array>
#include <chrono>
#include <cstdlib>
#include <set>
#include <thread>

#include "service/DisplayControlImpl.h"
#include "service/NextHandle.h"
#include "tests/PhoneTest.h"

namespace vendor::kov::hardware::display_control::V1_0::implementation {

namespace {

using ::testing::ElementsAre;
using ::testing::ExitedWithCode;
using namespace std::chrono_literals;

uint64_t allocateHandle(DisplayControlImpl& service) {
    uint64_t handle = 0;
    service.allocUserHandle(0, [&handle](Result, uint64_t given) { handle = given; });
    return handle;
}

}  // namespace

class LifecycleTest : public PhoneTest {
protected:
    // A death test runs in a new process.
    LifecycleTest() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
    ~LifecycleTest() override { GTEST_FLAG_SET(death_test_style, "fast"); }

    // Ends the process, without destructors but with the phone's files removed.
    [[noreturn]] void exitIf(bool holds) {
        std::filesystem::remove_all(phone.files().root());
        _Exit(holds ? 0 : 1);
    }

    DisplayControlImpl service;
};

TEST_F(LifecycleTest, HandlesOfAProcessCountFrom1) {
    EXPECT_EXIT(exitIf(allocateHandle(service) == 1 && allocateHandle(service) == 2), ExitedWithCode(0), "");
    EXPECT_EQ(nextHandle(UINT64_MAX - 1), UINT64_MAX);
    EXPECT_EQ(nextHandle(UINT64_MAX), 1U) << "0 is not a handle";
}

TEST_F(LifecycleTest, ThreadsNeverShareAHandle) {
    constexpr size_t kEach = 20000;
    phone.observe({});  // the journal would make the threads take turns
    std::array<std::vector<uint64_t>, 4> given;
    std::vector<std::thread> clients;
    for (auto& handles : given) {
        clients.emplace_back([this, &handles] {
            for (size_t i = 0; i < kEach; ++i) handles.push_back(allocateHandle(service));
        });
    }
    for (std::thread& client : clients) client.join();
    std::set<uint64_t> all;
    for (const auto& handles : given) all.insert(handles.begin(), handles.end());
    EXPECT_EQ(all.size(), 4 * kEach);
    EXPECT_EQ(*all.rbegin() - *all.begin(), 4 * kEach - 1) << "none is lost";
}

TEST_F(LifecycleTest, AQueryLogsBeforeItsCallbackAndAnAllocationAfterIt) {
    const auto answered = [this](auto&&...) { lines.push_back("answered"); };
    service.getNumOfDisplay(7, answered);
    EXPECT_THAT(happened(), ElementsAre("log I getNumOfDisplay: 7", "answered"));
    service.getDisplayInfo(7, 0, answered);
    EXPECT_THAT(happened(), ElementsAre("log I getDisplayInfo: 7", "answered"));
    service.allocUserHandle(0, answered);
    EXPECT_THAT(happened(), ElementsAre("answered", ::testing::StartsWith("log I allocUserHandle: ")));
}

TEST_F(LifecycleTest, ARunningToneCurveOutlivesTheService) {
    const auto messagesAfterTheEnd = [this] {
        {
            DisplayControlImpl brief;
            brief.init();
            EXPECT_EQ(brief.setAlad(7, 0, 1), Result::OK);
        }
        phone.sensors().deliver(9000);
        phone.clock().advance(2s);
        return happened("composer setAladParams").size();
    };
    EXPECT_EXIT(exitIf(messagesAfterTheEnd() == 3), ExitedWithCode(0), "");
}

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
