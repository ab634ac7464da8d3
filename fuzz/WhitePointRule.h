// The rule by which the driver's white point is read, told once more.
#pragma once

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>

namespace fuzz {

// Takes name and a number off the front of text; nothing when they do not stand there. White space may stand before a
// number, which saturates at the ends of the int range.
inline std::optional<int32_t> takeNumber(std::string& text, const std::string& name) {
    if (text.substr(0, name.size()) != name) return std::nullopt;
    size_t place = name.size();
    while (place < text.size() && std::isspace(static_cast<unsigned char>(text[place])) != 0) ++place;
    const bool hasSign = place < text.size() && (text[place] == '-' || text[place] == '+');
    const int64_t sign = hasSign && text[place] == '-' ? -1 : 1;
    if (hasSign) ++place;
    const size_t digits = place;
    int64_t value = 0;
    for (; place < text.size() && text[place] >= '0' && text[place] <= '9'; ++place) {
        value = std::min<int64_t>(value * 10 + (text[place] - '0'), int64_t{1} << 40);
    }
    if (place == digits) return std::nullopt;
    text.erase(0, place);
    return static_cast<int32_t>(std::clamp<int64_t>(sign * value, INT32_MIN, INT32_MAX));
}

// x and y in thousandths out of a node that holds "x=%d,y=%d": its first 64 bytes, up to a zero byte.
inline std::optional<std::pair<int32_t, int32_t>> whitePointOf(const std::string& node) {
    std::string text = node.substr(0, 64);
    text = text.substr(0, text.find('\0'));
    const auto x = takeNumber(text, "x=");
    const auto y = x ? takeNumber(text, ",y=") : std::nullopt;
    if (!y) return std::nullopt;
    return std::make_pair(*x, *y);
}

}  // namespace fuzz
