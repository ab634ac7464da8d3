// SPDX-License-Identifier: Apache-2.0
// The simulated phone: everything around the service.
//
//     Phone phone(Phone::Start::SAMPLE);
//     phone.observe([](const Event& event) { puts(textOf(event).c_str()); });
//     phone.composer().fail(ComposerOperation::GET_NUM_OF_DISPLAY, Failure::TRANSPORT_BEFORE);
//     phone.sensors().fail(SensorOperation::ENABLE_SENSOR, Failure::REFUSED);
//     phone.closed().fail(ClosedFunction::GET_UNLIMITED_CT_PARAMS, -7);
//     phone.closed().getAGTMLevel = [](int lux) { return lux / 1000; };
//     phone.files().write(kWhitePointNode, "x=313,y=329\n");
//     phone.files().remove(kCabcNode);
//     phone.files().makeFolder(kPanelNameNode);
//     phone.clock().refuseThreads(true);                            // no thread can be started
//     phone.stopComposer();                                         // its process ends: every call fails
//     phone.setComposerPresent(false);                              // it runs, and getService does not find it
//     phone.sensors().light(9000);
//     phone.clock().advance(std::chrono::seconds(3));
#pragma once

#include <platform/VirtualClock.h>

#include <filesystem>
#include <memory>
#include <optional>

#include "simulator/ClosedLibraries.h"
#include "simulator/Composer.h"
#include "simulator/Journal.h"
#include "simulator/PhoneFiles.h"
#include "simulator/Sensors.h"

namespace simulator {

// Owns the phone's files, composer, sensors, closed libraries and time. While it lives its clock is the process's, its
// services are registered, its folder is the device root, its closed libraries are the process's and its journal
// receives the log and the node writes. So one lives at a time. It is used by one thread, which steps the clock; what
// its parts say of other threads holds besides. A service that was started on it ends before it.
class Phone {
public:
    enum class Start {
        EMPTY,   // no file at all
        SAMPLE,  // a fresh copy of the sample phone
    };
    // With one display, the composer started and the sensors there. sample is the sample phone's folder; its default is
    // the caller's, so that an installed library depends on no place. Throws std::runtime_error when the files cannot
    // be copied.
    explicit Phone(Start start, const std::filesystem::path& sample = DISPLAY_CONTROL_DATA_DIR "/phone");
    // The phone's files are used where they are. Throws std::runtime_error when it is not a folder.
    explicit Phone(const std::filesystem::path& folder);
    ~Phone();
    Phone(const Phone&) = delete;
    Phone& operator=(const Phone&) = delete;

    // Everything that happens from now on goes to observer. Without one, events and log lines are dropped.
    void observe(Observer observer) { journal->observe(std::move(observer)); }
    // Adds what its caller knows alone to the journal, such as an answer.
    void report(Event::What what) { journal->add(std::move(what)); }

    PhoneFiles& files() { return tree; }
    platform::VirtualClock& clock() { return virtualClock; }
    Sensors& sensors() { return *sensorService; }
    ClosedLibraries& closed() { return closedLibraries; }
    // The one that runs, or that has stopped last. Its settings are lost when another one starts.
    Composer& composer() { return *displayComposer; }
    const Composer& composer() const { return *displayComposer; }

    // Ends the composer's process: calls fail at the transport, for good where somebody holds it, and getService does
    // not find it. startComposer starts another one with as many displays, unless one runs.
    void stopComposer();
    void startComposer();

    // Whether getService finds them from now on; who holds one can still call it.
    void setComposerPresent(bool present);
    void setSensorsPresent(bool present);

private:
    explicit Phone(PhoneFiles files);
    void publish();

    platform::VirtualClock virtualClock;
    PhoneFiles tree;
    const std::shared_ptr<Journal> journal = std::make_shared<Journal>();
    ClosedLibraries closedLibraries{journal};
    ::android::sp<Composer> displayComposer;
    const ::android::sp<Sensors> sensorService;
    bool composerPresent = true;
    bool sensorsPresent = true;
};

}  // namespace simulator
