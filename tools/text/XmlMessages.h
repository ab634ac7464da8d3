// SPDX-License-Identifier: Apache-2.0
// What libxml2 reports of a file that it reads.
#pragma once

#include <libxml/xmlerror.h>

#include <functional>
#include <string>

namespace simulator {

struct XmlMessage {
    std::string file;  // without its folder
    int line;
    std::string message;
    bool isError;  // not a warning
};

// Receives libxml2's messages while it lives, in place of the handler before it. One thread uses it and the reader.
class XmlMessageHandler {
public:
    using Sink = std::function<void(const XmlMessage& message)>;

    explicit XmlMessageHandler(Sink messageSink);
    ~XmlMessageHandler() { xmlSetStructuredErrorFunc(previousContext, previous); }
    XmlMessageHandler(const XmlMessageHandler&) = delete;
    XmlMessageHandler& operator=(const XmlMessageHandler&) = delete;

private:
    const Sink sink;
    const xmlStructuredErrorFunc previous = xmlStructuredError;
    void* const previousContext = xmlStructuredErrorContext;
};

}  // namespace simulator
