// Everything that stands around the service on a desk.
#pragma once

#include <platform/VirtualClock.h>

#include <filesystem>
#include <optional>

#include "simulator/PhoneTree.h"
#include "simulator/SimulatedComposer.h"
#include "simulator/SimulatedSensors.h"

namespace simulator {

// The phone's files, composer, sensors and time. While it lives it is the process's: its clock is in force, its
// services stand in the registry, its folder is the device root, and the closed libraries begin unconfigured. So there
// is one at a time, used by one thread, the one that steps the clock.
class SimulatedPhone {
public:
    // With folder the phone's files are used as they stand there, otherwise a fresh copy of the sample phone. Throws
    // std::runtime_error when they cannot be had. The observer sees every call of the composer.
    SimulatedPhone(const std::optional<std::filesystem::path>& folder, SimulatedComposer::Observer observer);
    ~SimulatedPhone();
    SimulatedPhone(const SimulatedPhone&) = delete;
    SimulatedPhone& operator=(const SimulatedPhone&) = delete;

    PhoneTree& files() { return tree; }
    platform::VirtualClock& clock() { return virtualClock; }
    SimulatedSensors& sensors() { return *sensorService; }

    // Of the composer that runs now, and of every one that is started later.
    void setDisplayCount(uint32_t count);
    // Of the composer that runs now; 0 without one.
    uint32_t displays() const { return composer == nullptr ? 0 : displayCount; }
    // Nothing happens to a composer that runs already, or has stopped already.
    void startComposer();
    void stopComposer();
    // What the composer holds for a display; nothing without a composer or for a display that it does not have.
    std::optional<DisplayState> shown(uint64_t display) const;

    // Whether the sensor service can be found by who looks for it from now on.
    void setSensorsPresent(bool present);

private:
    void publish();

    platform::VirtualClock virtualClock;
    PhoneTree tree;
    const SimulatedComposer::Observer composerObserver;
    uint32_t displayCount = 1;
    ::android::sp<SimulatedComposer> composer;  // null while it is stopped
    const ::android::sp<SimulatedSensors> sensorService;
    bool sensorsPresent = true;
};

}  // namespace simulator
