// SPDX-License-Identifier: Apache-2.0
// Reads and writes sysfs nodes. Compiled on the host and on the phone.
#include <fcntl.h>
#include <unistd.h>

#include <cstring>
#include <string>
#include <utility>

#include <platform/DeviceFiles.h>
#include "platform/src/DeviceNodes.h"

namespace platform {

namespace {

class Descriptor {
public:
    Descriptor(std::string_view absolutePath, int flags) : descriptor(open(devicePath(absolutePath).c_str(), flags)) {}
    ~Descriptor() {
        if (isOpen()) close(descriptor);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    bool isOpen() const { return descriptor >= 0; }
    int get() const { return descriptor; }

private:
    const int descriptor;
};

}  // namespace

NodeText readNode(std::string_view absolutePath, size_t limit) {
    const Descriptor node(absolutePath, O_RDONLY);
    if (!node.isOpen()) return {NodeStatus::OPEN_FAILED, {}};
    std::string text(limit, '\0');
    const ssize_t count = read(node.get(), text.data(), limit);
    if (count < 1) return {NodeStatus::READ_FAILED, {}};
    text.resize(strnlen(text.data(), static_cast<size_t>(count)));
    return {NodeStatus::OK, std::move(text)};
}

NodeStatus writeNode(std::string_view absolutePath, std::string_view bytes) {
    const Descriptor node(absolutePath, O_WRONLY);
    if (!node.isOpen()) return NodeStatus::OPEN_FAILED;
    [[maybe_unused]] const ssize_t written = write(node.get(), bytes.data(), bytes.size());
    reportNodeWrite(absolutePath, bytes);
    return NodeStatus::OK;
}

}  // namespace platform
