#include "simulator/dcsim/Terminal.h"

#include <unistd.h>

#include <cstdlib>

#include "simulator/script/Event.h"

namespace dcsim {

namespace {

// No thread of the program changes its environment.
std::string_view variable(const char* name) {
    const char* const value = getenv(name);  // NOLINT(concurrency-mt-unsafe)
    return value == nullptr ? "" : value;
}

}  // namespace

bool useColor(int descriptor) {
    return isatty(descriptor) == 1 && variable("NO_COLOR").empty() && variable("TERM") != "dumb";
}

std::string harmless(std::string_view text) {
    constexpr char kDelete = '\x7F';
    std::string shown;
    for (const char c : text) {
        const bool steers = (static_cast<unsigned char>(c) < ' ' && c != '\n') || c == kDelete;
        shown += steers ? simulator::printable({&c, 1}) : std::string(1, c);
    }
    return shown;
}

}  // namespace dcsim
