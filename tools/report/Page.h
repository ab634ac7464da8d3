// SPDX-License-Identifier: Apache-2.0
// The report's page: one HTML file that needs nothing else.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace simulator {

// The whole page with the data, a JSON text, inside. Nothing in it ends the script element around it.
std::string renderPage(const std::string& json);

// RFC 4648.
std::string base64(const std::vector<uint8_t>& bytes);

}  // namespace simulator
