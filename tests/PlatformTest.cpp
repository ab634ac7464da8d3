// The stand-in for the phone's runtime.
#include <hidl/Status.h>
#include <platform/Answer.h>
#include <platform/DeviceFiles.h>
#include <platform/Log.h>
#include <platform/Services.h>
#include <platform/VirtualClock.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/ServiceTest.h"

namespace {

using namespace std::chrono_literals;
using android::sp;
using android::hardware::Return;
using android::hardware::Status;
using platform::Clock;
using platform::VirtualClock;
using ::testing::ElementsAre;

Status failed() {
    return Status::fromStatusT(android::DEAD_OBJECT);
}

TEST(ReturnDeathTest, AFailureThatNobodyLookedAtEndsTheProcess) {
    EXPECT_DEATH({ Return<void> answer(failed()); }, "not checked.*-32");
    EXPECT_DEATH({ Return<int32_t> answer(failed()); }, "not checked");
    EXPECT_DEATH(
        {
            Return<int32_t> answer(failed());
            answer = Return<int32_t>(5);
        },
        "not checked");
    EXPECT_DEATH(
        {
            Return<int32_t> answer(failed());
            const Return<int32_t> moved = std::move(answer);
        },
        "not checked");
    EXPECT_DEATH(
        {
            const Return<int32_t> answer = Status::fromExceptionCode(Status::EX_ILLEGAL_STATE, "no light");
            const int32_t value = answer;
            static_cast<void>(value);
        },
        "retrieve value.*no light");
}

TEST(Services, OneThatEndsMayUseTheRegistry) {
    struct Leaving : fakes::FakeComposer {
        explicit Leaving(int& times) : asked(times) {}
        ~Leaving() override { asked += getService("another") == nullptr ? 1 : 0; }
        int& asked;
    };
    int asked = 0;
    EXPECT_EQ(sp<Leaving>(new Leaving(asked))->registerAsService(), android::OK);
    EXPECT_EQ(sp<Leaving>(new Leaving(asked))->registerAsService(), android::OK);
    EXPECT_EQ(asked, 1) << "the replaced one";
    platform::clearServices();
    EXPECT_EQ(asked, 2);
}

TEST(Return, AFailureThatWasLookedAtIsTheCallersAffair) {
    Return<int32_t> answer(failed());
    EXPECT_EQ(answer.withDefault(7), 7);
    EXPECT_TRUE(answer.isDeadObject());
    EXPECT_FALSE(Return<void>(failed()).isOk());
    Return<int32_t> given(failed());
    const Return<int32_t> taken = std::move(given);
    EXPECT_FALSE(taken.isOk());
    answer = Return<int32_t>(5);
    answer = Return<int32_t>(6);
    EXPECT_EQ(answer.withDefault(7), 6);
    EXPECT_EQ(answer.description(), "Status(EX_NONE)");
    EXPECT_EQ(Return<int32_t>(5).withDefault(7), 5);
    EXPECT_TRUE(Status::fromStatusT(android::OK).isOk());
    EXPECT_EQ(Status::fromExceptionCode(Status::EX_ILLEGAL_STATE, nullptr).exceptionCode(), Status::EX_ILLEGAL_STATE);
}

TEST(Log, BelowTheMinimumPriorityNoArgumentIsEvaluated) {
    const fakes::JournaledLog log;
    fakes::journal::take();
    int evaluated = 0;
    EXPECT_EQ(__android_log_set_minimum_priority(ANDROID_LOG_INFO), ANDROID_LOG_DEFAULT);
    PLATFORM_LOG_DEBUG("%d", ++evaluated);
    EXPECT_EQ(__android_log_print(ANDROID_LOG_DEBUG, "TAG", "%d", 1), 0);
    PLATFORM_LOG_INFO("%d", ++evaluated);
    EXPECT_EQ(__android_log_get_minimum_priority(), ANDROID_LOG_INFO);
    EXPECT_EQ(__android_log_set_minimum_priority(ANDROID_LOG_DEFAULT), ANDROID_LOG_INFO);
    PLATFORM_LOG_DEBUG("%d", ++evaluated);
    EXPECT_EQ(__android_log_print(ANDROID_LOG_DEBUG, "TAG", "%s", std::string(2000, 'x').c_str()), 1);
    EXPECT_THAT(fakes::journal::take(),
                ElementsAre("log I TestBody: 1", "log D TestBody: 2", "log D TAG " + std::string(1023, 'x')));
}

std::string briefLine(const std::string& begin, pid_t process, const std::string& text) {
    char number[16];
    snprintf(number, sizeof number, "(%5d): ", process);
    return begin + number + text + "\n";
}

TEST(Log, TheDefaultLoggerWritesBriefLines) {
    const std::string longTag(2000, 't');
    testing::internal::CaptureStderr();
    __android_log_print(ANDROID_LOG_WARN, "TAG", "%s %d", "level", 5);
    __android_log_print(ANDROID_LOG_SILENT + 1, nullptr, "%s", std::string(2000, 'x').c_str());
    __android_log_print(ANDROID_LOG_INFO, longTag.c_str(), "cut");
    const pid_t forked = fork();
    if (forked == 0) _exit(__android_log_print(ANDROID_LOG_INFO, "TAG", "forked") - 1);
    waitpid(forked, nullptr, 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              briefLine("W/TAG", getpid(), "level 5") + briefLine("?/", getpid(), std::string(1023, 'x')) + "I/" +
                  longTag.substr(0, 1150) + "\n" + briefLine("I/TAG", forked, "forked"));
}

TEST(Services, NothingCannotBePublished) {
    EXPECT_EQ(platform::addService("interface", "default", nullptr), android::UNKNOWN_ERROR);
    EXPECT_EQ(platform::findService("interface", "default"), nullptr);
}

TEST(StrongPointer, TheLastOneDeletes) {
    struct Counted : android::RefBase {
        explicit Counted(int& count) : alive(count) { ++alive; }
        ~Counted() override { --alive; }
        int& alive;
    };
    int alive = 0;
    sp<Counted> first = new Counted(alive);
    sp<android::RefBase> second = first;
    sp<Counted> third = std::move(first);
    EXPECT_EQ(first, nullptr);
    third = *&third;
    third.clear();
    EXPECT_EQ(alive, 1);
    second = nullptr;
    EXPECT_EQ(alive, 0);
}

TEST(DeviceFiles, TheRootStandsBeforeThePhonesPath) {
    EXPECT_EQ(platform::devicePath("/sys/node"), "/sys/node");
    const fakes::PhoneFolder phone;
    EXPECT_EQ(platform::devicePath("/sys/node"), phone.at("/sys/node"));
    phone.write("/sys/node", std::string(200, 'x'));
    EXPECT_EQ(platform::readNode("/sys/node", 64).text.size(), 64U);
    EXPECT_EQ(platform::readNode("/sys/node", 1000).text.size(), 128U);
    EXPECT_EQ(platform::readNode("/sys", 64).status, platform::NodeStatus::READ_FAILED) << "a folder";
    EXPECT_EQ(platform::readNode("/none", 64).status, platform::NodeStatus::OPEN_FAILED);
}

TEST(RealClock, AWaitEndsAtItsDeadlineOrWithANotification) {
    Clock& clock = platform::clock();
    ASSERT_EQ(&clock, &platform::realClock()) << "in force unless another is set";
    const Clock::Duration start = clock.now();
    clock.sleepFor(1ns);
    EXPECT_GT(clock.now(), start);

    platform::Mutex mutex;
    platform::Condition changed;
    const Clock::Duration deadline = clock.now() + 2ms;
    {
        platform::Lock lock(mutex);
        clock.waitUntil(changed, lock, deadline);
    }
    EXPECT_GE(clock.now(), deadline);

    std::unique_ptr<platform::Thread> notifier;
    {
        platform::Lock lock(mutex);
        notifier = clock.startThread([&] {
            const platform::Lock own(mutex);  // not before the wait has released it
            changed.notifyOne();
        });
        clock.waitUntil(changed, lock, clock.now() + std::chrono::hours(24));
    }
    clock.join(*notifier);
}

class VirtualClockTest : public testing::Test {
protected:
    // Ticks count times, period apart, and says so with the time.
    std::unique_ptr<platform::Thread> ticking(const std::string& name, Clock::Duration period, int count) {
        return clock.startThread([this, name, period, count] {
            for (int i = 0; i < count; ++i) {
                clock.sleepFor(period);
                fakes::journal::add(name + std::to_string(clock.now() / 1s));
            }
        });
    }

    VirtualClock clock;
};

TEST_F(VirtualClockTest, DeadlinesComeInOrderAndAlwaysInTheSame) {
    for (int round = 0; round < 50; ++round) {
        fakes::journal::take();
        const Clock::Duration start = clock.now();
        const auto slow = ticking("slow ", 3s, 2);
        clock.settle();
        const auto quick = ticking("quick ", 2s, 3);
        clock.settle();
        clock.advance(1s);
        EXPECT_TRUE(fakes::journal::take().empty());
        clock.advance(5s);
        const auto at = [start](const char* name, int seconds) { return name + std::to_string(start / 1s + seconds); };
        ASSERT_THAT(fakes::journal::take(),
                    ElementsAre(at("quick ", 2), at("slow ", 3), at("quick ", 4), at("slow ", 6), at("quick ", 6)))
            << "round " << round << ": of two at once the one that began to wait first";
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
    pthread_setattr_default_np(&usual);
    clock.settle();  // does not wait for it
}

TEST_F(VirtualClockTest, ANotificationWakesEarly) {
    platform::Mutex mutex;
    platform::Condition changed;
    bool stop = false;
    const auto worker = clock.startThread([&] {
        platform::Lock lock(mutex);
        while (!stop && clock.now() < 10s) clock.waitUntil(changed, lock, 10s);
        fakes::journal::add(stop ? "stopped" : "due");
    });
    clock.advance(3s);
    fakes::journal::take();
    {
        const platform::Lock lock(mutex);
        stop = true;
        changed.notifyOne();
    }
    clock.advance(20s);
    EXPECT_THAT(fakes::journal::take(), ElementsAre("stopped"));
    worker->join();
    const auto late = clock.startThread([&] {
        platform::Lock lock(mutex);
        clock.waitUntil(changed, lock, clock.now() - 1s);
        fakes::journal::add("not in time");
    });
    clock.settle();
    EXPECT_THAT(fakes::journal::take(), ElementsAre("not in time"));
    clock.join(*late);
    clock.sleepFor(1s);
    EXPECT_EQ(clock.now(), 24s) << "on the stepping thread a sleep is a step";
}

}  // namespace
