// SPDX-License-Identifier: Apache-2.0
#include <platform/DeviceFiles.h>

#include <utility>

#include "platform/src/DeviceNodes.h"

namespace platform {

namespace {

std::string& deviceRoot() {
    static std::string root;
    return root;
}

NodeWriteObserver& nodeWriteObserver() {
    static NodeWriteObserver observer;
    return observer;
}

}  // namespace

std::string devicePath(std::string_view absolutePath) {
    return std::string(deviceRoot()).append(absolutePath);
}

void setDeviceRoot(std::string root) {
    deviceRoot() = std::move(root);
}

void setNodeWriteObserver(NodeWriteObserver observer) {
    nodeWriteObserver() = std::move(observer);
}

void reportNodeWrite(std::string_view absolutePath, std::string_view bytes) {
    if (nodeWriteObserver()) nodeWriteObserver()(absolutePath, bytes);
}

}  // namespace platform
