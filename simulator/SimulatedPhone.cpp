#include "simulator/SimulatedPhone.h"

#include <platform/Services.h>

#include <utility>

#include "simulator/closed/EyeCare.h"
#include "simulator/closed/UnlimitedColorTemperature.h"

namespace simulator {

namespace {

PhoneTree openTree(const std::optional<std::filesystem::path>& folder) {
    return folder ? PhoneTree::at(*folder)
                  : PhoneTree::copyOf(std::filesystem::path(DISPLAY_CONTROL_DATA_DIR) / "phone");
}

}  // namespace

SimulatedPhone::SimulatedPhone(const std::optional<std::filesystem::path>& folder, SimulatedComposer::Observer observer)
    : tree(openTree(folder)), composerObserver(std::move(observer)), sensorService(new SimulatedSensors) {
    resetUnlimitedColorTemperature();
    resetEyeCare();
    platform::setClock(&virtualClock);
    startComposer();
}

SimulatedPhone::~SimulatedPhone() {
    platform::clearServices();
    platform::setClock(nullptr);
}

void SimulatedPhone::setDisplayCount(uint32_t count) {
    displayCount = count;
    if (composer != nullptr) composer->setDisplayCount(count);
}

void SimulatedPhone::startComposer() {
    if (composer != nullptr) return;
    composer = new SimulatedComposer(displayCount);
    composer->setObserver(composerObserver);
    publish();
}

void SimulatedPhone::stopComposer() {
    if (composer == nullptr) return;
    composer->stop();
    composer.clear();
    publish();
}

std::optional<DisplayState> SimulatedPhone::shown(uint64_t display) const {
    return composer == nullptr ? std::nullopt : composer->stateOf(display);
}

void SimulatedPhone::setSensorsPresent(bool present) {
    sensorsPresent = present;
    publish();
}

// Puts those services into the registry that are there now.
void SimulatedPhone::publish() {
    platform::clearServices();
    if (composer != nullptr) composer->registerAsService();
    if (sensorsPresent) sensorService->registerAsService();
}

}  // namespace simulator
