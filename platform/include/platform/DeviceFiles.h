// Files of the device: calibration files and driver nodes, named by the absolute path that they have on the phone.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace platform {

// Where the file that the phone calls absolutePath is to be opened: the device root put in front of it.
std::string devicePath(std::string_view absolutePath);

// The folder that stands for the phone's "/". Empty at first: the phone's own paths, as written. Set it while no other
// thread uses device files.
void setDeviceRoot(std::string root);

enum class NodeStatus {
    OK,
    OPEN_FAILED,
    READ_FAILED,  // the read delivered no byte: end of file or an error
};

// What one read of a node delivered: at most the bytes asked for, ending before the first zero byte.
struct NodeText {
    NodeStatus status;
    std::string text;  // empty unless status is OK
};

// Opens the node for reading only, reads once, at most limit bytes (never more than 128), and closes it. A read that a
// signal interrupted is repeated.
NodeText readNode(std::string_view absolutePath, size_t limit);

// Opens the node for writing only (it is neither created nor truncated), writes the bytes in one write, and closes it.
// How many bytes the driver took is not looked at. Reports OK or OPEN_FAILED.
NodeStatus writeNode(std::string_view absolutePath, std::string_view bytes);

// Called after every writeNode that opened its node, with the phone's path and the bytes; how a desk sees what a driver
// is told. An empty function, as at first, observes nothing. Set it while no other thread uses device files.
using NodeWriteObserver = std::function<void(std::string_view absolutePath, std::string_view bytes)>;
void setNodeWriteObserver(NodeWriteObserver observer);

}  // namespace platform
