// What happened around the library, in one order.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace fakes {

// Every fake writes one line per event here; log lines join them while a JournaledLog lives. The forms:
//     composer setColorTransformMatrix(0, I, [2 0 0 0 1 0 0 0 1])
//     closed getUnlimitedCTParams(7, [1 1 1])
//     node lcd_cabc_mode 31 0a
//     log D setStandardMode: enter               (priority letter and function name; the line number is left out)
// One process-wide journal, since loggers and closed libraries are process-wide too. Any thread may add a line.
namespace journal {

void add(const std::string& line);
// What happened since the last take, all of it or only the lines that begin with kind; everything is forgotten then.
std::vector<std::string> take(const std::string& kind = "");
// Asked at every line but the log's; what it says is put behind the line. Empty: nothing.
void setAside(std::function<std::string()> aside);

}  // namespace journal

// Floats with so many digits that different bits read differently (all NaN read "nan"); "I" for the 3x3 identity.
std::string text(const float* values, size_t count);

// Sends the process's log lines to the journal as long as it lives.
class JournaledLog {
public:
    JournaledLog();
    ~JournaledLog();
};

}  // namespace fakes
