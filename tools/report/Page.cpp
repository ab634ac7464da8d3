// SPDX-License-Identifier: Apache-2.0
#include "tools/report/Page.h"

#include <string_view>

namespace simulator {

// The page without its data; EmbedPage.cmake makes it of the files here.
extern const unsigned char kPage[];
extern const size_t kPageSize;

namespace {

// A JSON text without a '<'.
std::string embeddable(const std::string& json) {
    std::string escaped;
    escaped.reserve(json.size());
    for (const char c : json) {
        if (c == '<') {
            escaped += "\\u003c";  // a '<' occurs only in strings
        } else {
            escaped += c;
        }
    }
    return escaped;
}

}  // namespace

std::string renderPage(const std::string& json) {
    constexpr std::string_view kPlace = "@REPORT_DATA@";
    std::string page(reinterpret_cast<const char*>(kPage), kPageSize);
    return page.replace(page.find(kPlace), kPlace.size(), embeddable(json));
}

std::string base64(const std::vector<uint8_t>& bytes) {
    constexpr std::string_view kDigits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    for (size_t i = 0; i < bytes.size(); i += 3) {
        const size_t count = std::min<size_t>(3, bytes.size() - i);
        uint32_t group = 0;
        for (size_t k = 0; k < 3; ++k) group = group << 8 | (k < count ? bytes[i + k] : 0U);
        for (size_t k = 0; k < 4; ++k) text += k <= count ? kDigits[group >> (18 - 6 * k) & 63] : '=';
    }
    return text;
}

}  // namespace simulator
