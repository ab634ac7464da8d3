// SPDX-License-Identifier: Apache-2.0
// Time on the phone: always the monotonic clock.
#include <platform/Clock.h>

namespace platform {

Clock& clock() {
    return realClock();
}

}  // namespace platform
