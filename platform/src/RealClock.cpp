// The monotonic clock; compiled for the desk and for the phone alike.
#include <platform/Clock.h>

#include <utility>

namespace platform {

namespace {

class RealClock final : public Clock {
public:
    Duration now() override { return std::chrono::steady_clock::now().time_since_epoch(); }

    void sleepFor(Duration duration) override { std::this_thread::sleep_for(duration); }

    void waitUntil(std::condition_variable& condition, std::unique_lock<std::mutex>& lock, Duration deadline) override {
        condition.wait_until(lock, std::chrono::steady_clock::time_point(deadline));
    }

    std::thread startThread(std::function<void()> body) override { return std::thread(std::move(body)); }
};

}  // namespace

Clock& realClock() {
    static RealClock instance;
    return instance;
}

}  // namespace platform
