// SPDX-License-Identifier: Apache-2.0
#include <platform/Clock.h>

#include <atomic>

namespace platform {

namespace {

std::atomic<Clock*> replacement{nullptr};

}  // namespace

Clock& clock() {
    Clock* const other = replacement.load();
    return other == nullptr ? realClock() : *other;
}

void setClock(Clock* other) {
    replacement.store(other);
}

}  // namespace platform
