// SPDX-License-Identifier: Apache-2.0
#include "tools/text/XmlMessages.h"

#include <filesystem>
#include <utility>

#include "tools/text/Text.h"

namespace simulator {

namespace {

XmlMessage messageOf(const xmlError& error) {
    const std::string file = error.file == nullptr ? "" : std::filesystem::path(error.file).filename().string();
    const std::string_view message = error.message == nullptr ? "" : error.message;
    return {file, error.line, std::string(trimmed(message)), error.level >= XML_ERR_ERROR};
}

}  // namespace

// libxml2 2.12 made the message const: auto fits both.
XmlMessageHandler::XmlMessageHandler(Sink messageSink) : sink(std::move(messageSink)) {
    xmlSetStructuredErrorFunc(this, [](void* handler, auto* error) {
        static_cast<const XmlMessageHandler*>(handler)->sink(messageOf(*error));
    });
}

}  // namespace simulator
