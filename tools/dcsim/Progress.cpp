// SPDX-License-Identifier: Apache-2.0
#include "tools/dcsim/Progress.h"

#include <unistd.h>

#include <algorithm>
#include <iostream>
#include <utility>

namespace dcsim {

namespace {

constexpr std::chrono::seconds kPatience{1};
constexpr std::chrono::milliseconds kBetweenBars{100};

}  // namespace

Progress::Progress(std::string work)
    : what(std::move(work)), onTerminal(isatty(STDERR_FILENO) == 1), next(Clock::now() + kPatience) {}

void Progress::show(double share) {
    if (!onTerminal) return;
    const auto now = Clock::now();
    if (share >= 1) {
        wipe();
        next = now + kPatience;
    }
    if (share >= 1 || now < next) return;
    constexpr size_t kWidth = 40;
    const double part = std::clamp(share, 0.0, 1.0);
    const auto filled = static_cast<size_t>(part * kWidth);
    std::cerr << "\r" << what << " [" << std::string(filled, '#') << std::string(kWidth - filled, '.') << "] "
              << static_cast<int>(part * 100) << " %" << std::flush;
    drawn = true;
    next = now + kBetweenBars;
}

void Progress::wipe() {
    if (std::exchange(drawn, false)) std::cerr << "\r\x1b[K" << std::flush;
}

}  // namespace dcsim
