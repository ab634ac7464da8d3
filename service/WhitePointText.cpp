// SPDX-License-Identifier: Apache-2.0
#include "service/WhitePointText.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>

namespace vendor::kov::hardware::display_control::V1_0::implementation {

namespace {

// Parses "NAME=" and a decimal number, and moves text past them.
std::optional<int32_t> readField(const char*& text, const char* name) {
    const size_t length = strlen(name);
    if (strncmp(text, name, length) != 0) return std::nullopt;
    const char* const digits = text + length;
    char* end = nullptr;
    const long long value = strtoll(digits, &end, /*base=*/10);  // saturates, where scanf's %d would be undefined
    if (end == digits) return std::nullopt;
    text = end;
    using Limits = std::numeric_limits<int32_t>;
    return static_cast<int32_t>(std::clamp<long long>(value, Limits::min(), Limits::max()));
}

}  // namespace

std::optional<WhitePointThousandths> parseWhitePoint(const std::string& text) {
    const char* rest = text.c_str();
    const auto x = readField(rest, "x=");
    if (!x) return std::nullopt;
    const auto y = readField(rest, ",y=");
    if (!y) return std::nullopt;
    return WhitePointThousandths{*x, *y};
}

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
