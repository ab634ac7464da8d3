// The one door to the driver's nodes; compiled for the desk and for the phone alike.
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>

#include <platform/DeviceFiles.h>
#include <platform/OutOfMemory.h>
#include "platform/src/DeviceNodes.h"

namespace platform {

namespace {

constexpr size_t kLongestRead = 128;  // bytes

class Descriptor {
public:
    Descriptor(std::string_view absolutePath, int flags) : descriptor(openRetrying(devicePath(absolutePath), flags)) {}
    ~Descriptor() {
        if (isOpen()) close(descriptor);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    bool isOpen() const { return descriptor >= 0; }

    // Bytes read, 0 at the end of the file, negative on an error.
    ssize_t readOnce(char* buffer, size_t size) const {
        ssize_t count = 0;
        do count = read(descriptor, buffer, size);
        while (count < 0 && errno == EINTR);
        return count;
    }

    void writeOnce(std::string_view bytes) const {
        ssize_t count = 0;
        do count = write(descriptor, bytes.data(), bytes.size());
        while (count < 0 && errno == EINTR);
    }

private:
    static int openRetrying(const std::string& path, int flags) {
        int result = -1;
        do result = open(path.c_str(), flags);
        while (result < 0 && errno == EINTR);
        return result;
    }

    const int descriptor;
};

}  // namespace

NodeText readNode(std::string_view absolutePath, size_t limit) {
    return unlessOutOfMemory(NodeText{NodeStatus::OPEN_FAILED, {}}, [&]() -> NodeText {
        const Descriptor node(absolutePath, O_RDONLY);
        if (!node.isOpen()) return {NodeStatus::OPEN_FAILED, {}};
        std::array<char, kLongestRead> buffer{};
        const ssize_t count = node.readOnce(buffer.data(), std::min(limit, buffer.size()));
        if (count < 1) return {NodeStatus::READ_FAILED, {}};
        return {NodeStatus::OK, std::string(buffer.data(), strnlen(buffer.data(), static_cast<size_t>(count)))};
    });
}

NodeStatus writeNode(std::string_view absolutePath, std::string_view bytes) {
    return unlessOutOfMemory(NodeStatus::OPEN_FAILED, [&] {
        const Descriptor node(absolutePath, O_WRONLY);
        if (!node.isOpen()) return NodeStatus::OPEN_FAILED;
        node.writeOnce(bytes);
        reportNodeWrite(absolutePath, bytes);
        return NodeStatus::OK;
    });
}

}  // namespace platform
