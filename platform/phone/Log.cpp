// The log on the phone: its own minimum priority, as it stands when the library is loaded.
#include <platform/Log.h>

namespace platform {

std::atomic<int32_t> minimumLogPriority{__android_log_get_minimum_priority()};

}  // namespace platform
