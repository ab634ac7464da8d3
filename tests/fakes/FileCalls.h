// Files that fail to order.
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <vector>

namespace fakes {

enum class FileCall { OPEN, READ, WRITE, ACCESS, STAT, STAT64 };  // STAT64: of libxml2

// What happens to one call: it fails with that errno, or, when that is 0, a read or write ends after one byte.
struct FileFault {
    FileCall call;
    size_t at;  // from 1 on; 0 for none
    int error;
};

// Watches the C library's file calls of this thread as long as it lives, whoever makes them, and makes one of them
// fail. One at a time.
class FileCalls {
public:
    explicit FileCalls(FileFault fault = {FileCall::OPEN, 0, 0});
    ~FileCalls();
    FileCalls(const FileCalls&) = delete;
    FileCalls& operator=(const FileCalls&) = delete;

    size_t count(FileCall call) const { return counts.count(call) == 0 ? 0 : counts.at(call); }
    const std::vector<std::string>& opened() const { return paths; }  // whether it could be opened or not
    // The file of the call that failed; empty while none did.
    const std::string& failed() const { return victim; }

    // For the calls themselves. Counts the call; true when it is the one that goes wrong.
    bool count(FileCall call, const std::string& path);
    void noteOpen(const std::string& path, int descriptor);
    std::string pathOf(int descriptor) const;
    int error() const { return planned.error; }

private:
    const FileFault planned;
    std::map<FileCall, size_t> counts;
    std::vector<std::string> paths;
    std::map<int, std::string> descriptors;
    std::string victim;
};

// Descriptors that this process has open.
size_t openDescriptors();

}  // namespace fakes
