// SPDX-License-Identifier: Apache-2.0
// A bar for what takes long.
#pragma once

#include <chrono>
#include <string>

namespace dcsim {

// Draws a bar on standard error once the work has taken a second, if that is a terminal, and wipes it in the end.
// Used by one thread at a time.
class Progress {
public:
    // what is done, in a word.
    explicit Progress(std::string work);
    ~Progress() { wipe(); }
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    // share of the work that is done, 0 to 1. With 1 the bar goes, and the next piece of work begins.
    void show(double share);
    // Takes the bar away until it is next shown: before something else is written.
    void wipe();

private:
    using Clock = std::chrono::steady_clock;

    const std::string what;
    const bool onTerminal;
    bool drawn = false;
    Clock::time_point next;  // when the bar is drawn again
};

}  // namespace dcsim
