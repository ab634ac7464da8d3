// A phone on which no thread can be started.
#pragma once

#include <platform/Clock.h>

#include <system_error>

namespace fakes {

// The real clock otherwise.
class ThreadlessClock : public platform::Clock {
public:
    Duration now() override { return platform::realClock().now(); }
    void sleepFor(Duration duration) override { platform::realClock().sleepFor(duration); }
    void waitUntil(platform::Condition& condition, platform::Lock& lock, Duration deadline) override {
        platform::realClock().waitUntil(condition, lock, deadline);
    }
    std::thread startThread(std::function<void()> /*body*/) override {
        throw std::system_error(std::make_error_code(std::errc::resource_unavailable_try_again));
    }
    void join(std::thread& thread) override { thread.join(); }
};

}  // namespace fakes
