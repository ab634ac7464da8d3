// The monotonic clock; compiled for the desk and for the phone alike.
#include <platform/Clock.h>

#include <utility>

namespace platform {

namespace {

class RealClock final : public Clock {
public:
    Duration now() override { return std::chrono::steady_clock::now().time_since_epoch(); }

    void sleepFor(Duration duration) override { std::this_thread::sleep_for(duration); }

    void waitUntil(Condition& condition, Lock& lock, Duration deadline) override {
        const uint64_t before = condition.notifications();
        while (condition.notifications() == before && now() < deadline) {
            condition.waitUntil(lock, std::chrono::steady_clock::time_point(deadline));
        }
    }

    std::thread startThread(std::function<void()> body) override { return std::thread(std::move(body)); }

    void join(std::thread& thread) override { thread.join(); }
};

}  // namespace

Clock& realClock() {
    static RealClock instance;
    return instance;
}

}  // namespace platform
