// SPDX-License-Identifier: Apache-2.0
// The one journal of the simulated phone.
#pragma once

#include <android/log.h>
#include <platform/Mutex.h>

#include <atomic>

#include "simulator/Event.h"

namespace simulator {

// Gives every event the time of the process's clock and hands it to the observer. Every thread may add events. It
// receives the process's log lines and node writes from open() to close(), so one is open at a time.
class Journal {
public:
    void open();
    // Forgets the observer; what is added from now on is dropped.
    void close();

    void observe(Observer newObserver) PLATFORM_EXCLUDES(mutex);
    // False: whoever adds events can save making them.
    bool isObserved() const { return observed; }

    void add(Event::What what) PLATFORM_EXCLUDES(mutex);

private:
    void addLogLine(const __android_log_message& line);

    std::atomic<bool> observed{false};
    platform::Mutex mutex;  // held while the observer runs: one event after another
    Observer observer PLATFORM_GUARDED_BY(mutex);
};

}  // namespace simulator
