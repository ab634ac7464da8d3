// SPDX-License-Identifier: Apache-2.0
// User handles, and the end of the service.
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

uint64_t allocateHandle() {
    uint64_t handle = 0;
    DisplayControlImpl().allocUserHandle(0, [&handle](Result, uint64_t given) { handle = given; });
    return handle;
}

// Allocated before any test runs.
const uint64_t kFirstHandle = [] {
    __android_log_set_minimum_priority(ANDROID_LOG_SILENT);
    const uint64_t handle = allocateHandle();
    __android_log_set_minimum_priority(ANDROID_LOG_DEFAULT);
    return handle;
}();

}  // namespace

class LifecycleTest : public PhoneTest {
protected:
    DisplayControlImpl service;
};

TEST_F(LifecycleTest, HandlesOfAProcessCountFrom1) {
    EXPECT_EQ(kFirstHandle, 1U);
    EXPECT_EQ(nextHandle(UINT64_MAX - 1), UINT64_MAX);
    EXPECT_EQ(nextHandle(UINT64_MAX), 1U) << "0 is not a handle";
}

TEST_F(LifecycleTest, ThreadsNeverShareAHandle) {
    constexpr size_t kEach = 20000;
    phone.observe({});  // the journal would make the threads take turns
    std::array<std::vector<uint64_t>, 4> given;
    std::vector<std::thread> clients;
    for (auto& handles : given) {
        clients.emplace_back([&handles] {
            for (size_t i = 0; i < kEach; ++i) handles.push_back(allocateHandle());
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

TEST_F(LifecycleTest, ADisplayThatDoesNotAnswerHasNoName) {
    phone.composer().failOnce(3, simulator::Failure::NO_CALLBACK);  // after the count and display 0
    service.init();
    std::string shown;
    service.getDisplayInfo(7, 1, [&shown](Result, const DisplayInfo& info) {
        shown = std::string(info.name) + std::to_string(info.values[0]);
    });
    EXPECT_EQ(shown, "0");
}

// In a process that ends with the tone curve running.
TEST_F(LifecycleTest, ARunningToneCurveOutlivesTheService) {
    const auto runWithoutService = [this] {
        {
            DisplayControlImpl brief;
            brief.init();
            brief.setAlad(7, 0, 1);
        }
        phone.sensors().deliver(9000);
        phone.clock().advance(2s);
        _Exit(static_cast<int>(happened("composer setAladParams").size()));
    };
    EXPECT_EXIT(runWithoutService(), ExitedWithCode(3), "");
}

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
