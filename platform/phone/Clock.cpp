// Time on the phone: always the monotonic clock.
#include <platform/Clock.h>

namespace platform {

Clock& clock() {
    return realClock();
}

}  // namespace platform
