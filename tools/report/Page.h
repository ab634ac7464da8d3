// SPDX-License-Identifier: Apache-2.0
// The report's page: one HTML file that needs nothing else.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tools/json/Json.h"

namespace simulator {

// The document as JSON text without a '<', so that nothing in it ends the script element around it; bytes that
// are not UTF-8 become U+FFFD.
std::string embeddable(const Json& data);

// The whole page with the data inside.
std::string renderPage(const Json& data);

// RFC 4648.
std::string base64(const std::vector<uint8_t>& bytes);

}  // namespace simulator
