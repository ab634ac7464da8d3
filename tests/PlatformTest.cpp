// SPDX-License-Identifier: Apache-2.0
// The phone's runtime on the host.
#include <hidl/Status.h>
#include <platform/DeviceFiles.h>
#include <platform/Log.h>
#include <platform/ScheduledClock.h>
#include <platform/Services.h>
#include <platform/VirtualClock.h>
#include <sys/wait.h>
#include <unistd.h>

#include <gmock/gmock.h>

#include <atomic>
#include <filesystem>

#include "simulator/PhoneFiles.h"

namespace {

using namespace std::chrono_literals;
using android::sp;
using android::hardware::Return;
using android::hardware::Status;
using platform::Clock;
using platform::VirtualClock;
using ::testing::ElementsAre;
using Lines = std::vector<std::string>;

Status failed() {
    return Status::fromStatusT(android::DEAD_OBJECT);
}

TEST(ReturnDeathTest, AFailureThatIsNotExaminedEndsTheProcess) {
    Return<int32_t> other(5);
    EXPECT_DEATH({ Return<void> answer(failed()); }, "HidlStatus.*not checked.*-32");
    __android_log_set_minimum_priority(ANDROID_LOG_SILENT);
    EXPECT_DEATH({ Return<int32_t> answer(failed()); }, "not checked");
    __android_log_set_minimum_priority(ANDROID_LOG_DEFAULT);
    EXPECT_DEATH((other = Return<int32_t>(failed()), other = Return<int32_t>(5)), "not checked");
    EXPECT_DEATH({ const Return<int32_t> moved = Return<int32_t>(failed()); }, "not checked");
    const auto valueOf = [](Return<int32_t> answer) -> int32_t { return answer; };
    EXPECT_DEATH(valueOf(Status::fromExceptionCode(Status::EX_ILLEGAL_STATE, "no light")), "retrieve value.*no light");
}

TEST(Return, AFailureThatIsExaminedIsAValue) {
    Return<int32_t> given(failed());
    Return<int32_t> moved = std::move(given);
    Return<int32_t> answer(5);
    answer = std::move(moved);
    EXPECT_EQ(answer.withDefault(7), 7);
    answer = Return<int32_t>(6);
    EXPECT_EQ(answer.withDefault(7), 6);
    EXPECT_EQ(answer.description(), "Status(EX_NONE)");
    EXPECT_TRUE(Status::fromStatusT(android::OK).isOk());
    EXPECT_EQ(Status::fromExceptionCode(Status::EX_ILLEGAL_STATE, nullptr).exceptionCode(), Status::EX_ILLEGAL_STATE);
}

TEST(Services, TheLatestOneIsFoundUntilTheyAreCleared) {
    struct Service : platform::IBase {
        explicit Service(Lines& end) : atEnd(end) {}
        ~Service() override {
            atEnd.push_back(platform::findService("interface", "default") == nullptr ? "gone" : "replaced");
        }
        Lines& atEnd;  // a service that ends may use the registry
    };
    Lines ends;
    EXPECT_EQ(platform::addService("interface", "default", nullptr), android::UNKNOWN_ERROR);
    EXPECT_EQ(platform::findService("interface", "default"), nullptr);
    EXPECT_EQ(platform::addService("interface", "default", new Service(ends)), android::OK);
    const sp<Service> latest = new Service(ends);
    EXPECT_EQ(platform::addService("interface", "default", latest), android::OK);
    EXPECT_EQ(platform::findService("interface", "default"), sp<platform::IBase>(latest));
    EXPECT_FALSE(latest->linkToDeath(nullptr, 0).withDefault(true)) << "nobody to report to";
    EXPECT_EQ(platform::findService("interface", "other"), nullptr);
    EXPECT_EQ(platform::findService("other", "default"), nullptr);
    EXPECT_EQ(platform::addService("interface", "other", new Service(ends)), android::OK);
    platform::clearServices();
    EXPECT_THAT(ends, ElementsAre("replaced", "gone"));
}

TEST(Log, BelowTheMinimumPriorityNoArgumentIsEvaluated) {
    static Lines lines;
    __android_log_set_logger(
        [](const __android_log_message* line) { lines.push_back(std::string(line->tag) + " " + line->message); });
    int evaluated = 0;
    EXPECT_EQ(__android_log_set_minimum_priority(ANDROID_LOG_INFO), ANDROID_LOG_DEFAULT);
    PLATFORM_LOG_DEBUG("%d", ++evaluated);
    EXPECT_EQ(__android_log_print(ANDROID_LOG_DEBUG, "TAG", "%d", 1), 0);
    PLATFORM_LOG_BARE(ANDROID_LOG_INFO, "%d", ++evaluated);
    EXPECT_EQ(__android_log_set_minimum_priority(ANDROID_LOG_DEFAULT), ANDROID_LOG_INFO);
    PLATFORM_LOG_BARE(ANDROID_LOG_DEBUG, "%d", ++evaluated);
    EXPECT_EQ(__android_log_print(ANDROID_LOG_DEBUG, "TAG", "%s", std::string(2000, 'x').c_str()), 1);
    __android_log_set_logger(nullptr);
    EXPECT_THAT(lines, ElementsAre("KovDisplayControlService 1", "KovDisplayControlService 2",
                                   "TAG " + std::string(1023, 'x')));
}

TEST(Log, TheDefaultLoggerWritesBriefLines) {
    const auto head = [](const char* begin, pid_t process) {
        char text[32];
        snprintf(text, sizeof text, "%s(%5d): ", begin, process);
        return std::string(text);
    };
    const std::string longTag(2000, 't');
    testing::internal::CaptureStderr();
    __android_log_print(ANDROID_LOG_WARN, "TAG", "%s %d", "level", 5);
    __android_log_print(ANDROID_LOG_SILENT + 1, nullptr, "%s", std::string(2000, 'x').c_str());
    __android_log_print(ANDROID_LOG_INFO, longTag.c_str(), "cut");
    const pid_t forked = fork();
    if (forked == 0) _exit(__android_log_print(ANDROID_LOG_INFO, "TAG", "forked") - 1);
    waitpid(forked, nullptr, 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), head("W/TAG", getpid()) + "level 5\n" + head("?/", getpid()) +
                                                          std::string(1023, 'x') + "\nI/" + longTag.substr(0, 1150) +
                                                          "\n" + head("I/TAG", forked) + "forked\n");
}

TEST(DeviceFiles, ANodeIsReadOnceAndWrittenInPlace) {
    EXPECT_EQ(platform::devicePath("/sys/node"), "/sys/node");
    auto files = simulator::PhoneFiles::empty();
    EXPECT_EQ(platform::devicePath("/sys/node"), files.root().string() + "/sys/node");
    files.write("/sys/node", std::string(200, 'x'));
    EXPECT_EQ(platform::readNode("/sys/node", 1).text, "x");
    EXPECT_EQ(platform::readNode("/sys/node", 1000).text.size(), 200U);
    const int input = dup(STDIN_FILENO);
    close(STDIN_FILENO);
    EXPECT_EQ(platform::readNode("/sys/node", 64).status, platform::NodeStatus::OK) << "as descriptor 0";
    dup2(input, STDIN_FILENO);
    close(input);
    files.write("/sys/node", "9999\n");
    EXPECT_EQ(platform::writeNode("/sys/node", "3\n"), platform::NodeStatus::OK);
    EXPECT_EQ(files.read("/sys/node"), "3\n99\n") << "not truncated";
}

// Coarse, because the machine may be busy: not early, and not seconds late.
TEST(RealClock, SleepsAndWaitsEndInTime) {
    Clock& clock = platform::clock();
    ASSERT_EQ(&clock, &platform::realClock()) << "in use unless another is set";
    platform::Mutex mutex;
    platform::Condition changed;
    const auto duration = [&clock](const std::function<void()>& what) {
        const Clock::Duration start = clock.now();
        what();
        return clock.now() - start;
    };
    const auto slept = duration([&] { clock.sleepFor(20ms); });
    EXPECT_TRUE(slept >= 20ms && slept < 1500ms) << slept / 1us;
    const auto waited = duration([&] {
        platform::Lock lock(mutex);
        clock.waitUntil(changed, lock, clock.now() + 2ms);
    });
    EXPECT_TRUE(waited >= 2ms && waited < 5s) << waited / 1us;

    std::unique_ptr<platform::Thread> notifier;
    std::atomic<bool> hasEnded{false};
    const auto woken = duration([&] {
        platform::Lock lock(mutex);
        const uint64_t before = changed.notifications();
        notifier = clock.startThread([&] {
            {
                const platform::Lock own(mutex);  // not before the wait has released it
                changed.notifyOne();
            }
            clock.sleepFor(2ms);
            hasEnded = true;
        });
        while (changed.notifications() == before) clock.waitUntil(changed, lock, clock.now() + std::chrono::hours(24));
    });
    EXPECT_LT(woken, 5s);
    clock.join(*notifier);
    EXPECT_TRUE(hasEnded);
}

class VirtualClockTest : public testing::Test {
protected:
    // Adds a line with the time, count times, period apart. Of two at once the one that began to wait first is first.
    std::unique_ptr<platform::Thread> ticking(const std::string& name, Clock::Duration period, int count) {
        return clock.startThread([this, name, period, count] {
            for (int i = 0; i < count; ++i) {
                clock.sleepFor(period);
                lines.push_back(name + std::to_string(clock.now() / 1s));
            }
        });
    }

    VirtualClock clock;
    Lines lines;  // one thread of the clock runs at a time
};

TEST_F(VirtualClockTest, DeadlinesComeInOrderAndAlwaysInTheSame) {
    for (int round = 0; round < 50; ++round) {
        lines.clear();
        const Clock::Duration start = clock.now();
        const auto slow = ticking("slow ", 3s, 2);
        clock.settle();
        const auto quick = ticking("quick ", 2s, 3);
        clock.settle();
        clock.advance(1s);
        EXPECT_EQ(lines, Lines());
        clock.advance(5s);
        const auto at = [start](const char* name, int seconds) { return name + std::to_string(start / 1s + seconds); };
        ASSERT_THAT(lines,
                    ElementsAre(at("quick ", 2), at("slow ", 3), at("quick ", 4), at("slow ", 6), at("quick ", 6)));
        slow->join();
        quick->join();
        EXPECT_EQ(clock.now() - start, 6s);
    }
}

TEST_F(VirtualClockTest, AThreadThatTheSystemRefusesIsNull) {
    pthread_attr_t usual;
    pthread_getattr_default_np(&usual);
    pthread_attr_t tooLarge;
    pthread_attr_init(&tooLarge);
    pthread_attr_setstacksize(&tooLarge, size_t{1} << 50);  // more than the address space
    pthread_setattr_default_np(&tooLarge);
    EXPECT_EQ(platform::realClock().startThread([] {}), nullptr);
    EXPECT_EQ(clock.startThread([] {}), nullptr);
    platform::ScheduledClock scheduled(1, 1);
    EXPECT_EQ(scheduled.startThread([] {}), nullptr);
    pthread_setattr_default_np(&usual);
    clock.settle();  // does not wait for it
    EXPECT_EQ(scheduled.unjoined(), 0U);
}

TEST_F(VirtualClockTest, ANotificationWakesEarly) {
    platform::Mutex mutex;
    platform::Condition changed;
    bool stop = false;
    const auto worker = clock.startThread([&] {
        platform::Lock lock(mutex);
        while (!stop && clock.now() < 10s) clock.waitUntil(changed, lock, 10s);
        lines.push_back(stop ? "stopped" : "due");
    });
    clock.advance(3s);
    {
        const platform::Lock lock(mutex);
        stop = true;
        changed.notifyOne();
    }
    clock.advance(20s);
    worker->join();
    const auto late = clock.startThread([&] {
        platform::Lock lock(mutex);
        clock.waitUntil(changed, lock, clock.now() - 1s);
        lines.push_back("late");
    });
    clock.settle();
    EXPECT_THAT(lines, ElementsAre("stopped", "late")) << "without a step";
    clock.join(*late);
    clock.sleepFor(1s);
    EXPECT_EQ(clock.now(), 24s) << "on the stepping thread a sleep is a step";
    const auto sleeper = ticking("slept ", 3s, 1);
    EXPECT_TRUE(clock.hasThreads());
    clock.join(*sleeper);
    EXPECT_FALSE(clock.hasThreads());
    EXPECT_EQ(lines.back(), "slept 27") << "time passes until the thread ends";
}

}  // namespace
