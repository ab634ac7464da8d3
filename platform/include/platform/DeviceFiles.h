// SPDX-License-Identifier: Apache-2.0
// Files of the device: calibration files and sysfs nodes, named by their absolute path on the phone.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace platform {

// Path to open for the phone's absolutePath: the device root followed by absolutePath.
std::string devicePath(std::string_view absolutePath);

// Sets the folder that represents the phone's "/". By default it is empty: paths are used as written. Set it while no
// other thread uses device files.
void setDeviceRoot(std::string root);

enum class NodeStatus {
    OK,
    OPEN_FAILED,
    READ_FAILED,  // the read returned no byte: end of file or an error
};

// Result of one read of a node.
struct NodeText {
    NodeStatus status;
    std::string text;  // the bytes read, up to the first zero byte; empty unless status is OK
};

// Opens the node for reading, reads once, at most limit bytes, and closes it.
NodeText readNode(std::string_view absolutePath, size_t limit);

// Opens the node for writing (it is neither created nor truncated), writes the bytes in one write, and closes it. The
// number of bytes written is not examined. Returns OK or OPEN_FAILED.
NodeStatus writeNode(std::string_view absolutePath, std::string_view bytes);

// Called after every writeNode that opened its node, with the phone's path and the bytes. Host only. An empty function
// removes the observer. Set it while no other thread uses device files.
using NodeWriteObserver = std::function<void(std::string_view absolutePath, std::string_view bytes)>;
void setNodeWriteObserver(NodeWriteObserver observer);

}  // namespace platform
