// SPDX-License-Identifier: Apache-2.0
#include "simulator/Phone.h"

#include <platform/Services.h>

#include <utility>

namespace simulator {

Phone::Phone(Start start, const std::filesystem::path& sample)
    : Phone(start == Start::EMPTY ? PhoneFiles::empty() : PhoneFiles::copyOf(sample)) {}

Phone::Phone(const std::filesystem::path& folder) : Phone(PhoneFiles::at(folder)) {}

Phone::Phone(PhoneFiles files)
    : tree(std::move(files)), displayComposer(new Composer(journal, 1)), sensorService(new Sensors(journal)) {
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

// Makes getService find the composer and the sensors that are present now, and no others.
void Phone::publish() {
    platform::removeService(composer_ext::IComposerExt::descriptor, "default");
    platform::removeService(sensorservice::ISensorManager::descriptor, "default");
    if (composerPresent && !displayComposer->hasStopped()) displayComposer->registerAsService();
    if (sensorsPresent) sensorService->registerAsService();
}

}  // namespace simulator
