// SPDX-License-Identifier: Apache-2.0
#include "simulator/Phone.h"

#include <platform/Services.h>

#include <system_error>
#include <utility>

namespace simulator {

// A virtual clock that cannot start threads.
class Phone::ThreadlessClock final : public platform::Clock {
public:
    explicit ThreadlessClock(platform::Clock& other) : clock(other) {}

    Duration now() override { return clock.now(); }
    void sleepFor(Duration duration) override { clock.sleepFor(duration); }
    void waitUntil(platform::Condition& condition, platform::Lock& lock, Duration deadline) override {
        clock.waitUntil(condition, lock, deadline);
    }
    std::thread startThread(std::function<void()> /*body*/) override {
        throw std::system_error(std::make_error_code(std::errc::resource_unavailable_try_again));
    }
    void join(std::thread& thread) override { clock.join(thread); }

private:
    platform::Clock& clock;
};

Phone::Phone(Start start)
    : Phone(start == Start::EMPTY ? PhoneFiles::empty() : PhoneFiles::copyOf(PhoneFiles::samplePhone())) {}

Phone::Phone(const std::filesystem::path& folder) : Phone(PhoneFiles::at(folder)) {}

Phone::Phone(PhoneFiles files)
    : threadlessClock(std::make_unique<ThreadlessClock>(virtualClock)),
      tree(std::move(files)),
      displayComposer(new Composer(journal, 1)),
      sensorService(new Sensors(journal)) {
    platform::setClock(&virtualClock);
    journal->open();
    ClosedLibraries::setOfProcess(&closedLibraries);
    publish();
}

Phone::~Phone() {
    platform::clearServices();
    ClosedLibraries::setOfProcess(nullptr);
    journal->close();
    platform::setClock(nullptr);
}

void Phone::stopComposer() {
    displayComposer->stop();
    publish();
}

void Phone::startComposer() {
    if (displayComposer->hasStopped()) displayComposer = new Composer(journal, displayComposer->displayCount());
    publish();
}

void Phone::setComposerPresent(bool present) {
    composerPresent = present;
    publish();
}

void Phone::setSensorsPresent(bool present) {
    sensorsPresent = present;
    publish();
}

void Phone::setThreadsAvailable(bool available) {
    platform::setClock(available ? static_cast<platform::Clock*>(&virtualClock) : threadlessClock.get());
}

// Registers the services that are found now, and no others.
void Phone::publish() {
    platform::clearServices();
    if (composerPresent && !displayComposer->hasStopped()) displayComposer->registerAsService();
    if (sensorsPresent) sensorService->registerAsService();
}

}  // namespace simulator
