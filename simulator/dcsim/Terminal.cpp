#include "simulator/dcsim/Terminal.h"

#include <unistd.h>

#include <cstdlib>

namespace dcsim {

bool useColor(int fd) {
    const char* const noColor = getenv("NO_COLOR");  // NOLINT(concurrency-mt-unsafe): nothing here sets the environment
    return (noColor == nullptr || *noColor == '\0') && isatty(fd) == 1;
}

}  // namespace dcsim
