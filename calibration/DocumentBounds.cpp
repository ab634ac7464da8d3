#include "calibration/DocumentBounds.h"

#include <algorithm>
#include <cctype>
#include <iterator>
#include <string>

namespace vendor::kov::hardware::display_control::V1_0::implementation {

namespace {

using namespace std::string_view_literals;

constexpr std::string_view kFirstBytes = "< \t\r\n\xEF\xFE\xFF";

bool beginsWith(std::string_view text, std::string_view beginning) {
    return text.substr(0, beginning.size()) == beginning;
}

// The bytes of a "<".
std::string_view tagIn(std::string_view bytes) {
    if (beginsWith(bytes, "\xFF\xFE")) return "<\0"sv;
    if (beginsWith(bytes, "\xFE\xFF")) return "\0<"sv;
    return "<"sv;
}

// The ASCII characters among the first ones, in lower case, whatever the width of a character.
std::string beginningOf(std::string_view bytes) {
    constexpr size_t kBytes = 512;  // several times an XML declaration
    std::string characters;
    for (const char byte : bytes.substr(0, kBytes)) {
        const auto value = static_cast<unsigned char>(byte);
        if (value > 0 && value < 0x80) characters += static_cast<char>(std::tolower(value));
    }
    return characters;
}

// Whether the XML declaration names no encoding or one of kEncodings.
bool declaresKnownEncoding(std::string_view beginning) {
    constexpr std::string_view kWord = "encoding";
    if (!beginsWith(beginning, "<?xml")) return true;
    const size_t end = beginning.find("?>");
    if (end == std::string_view::npos) return false;
    const std::string_view declaration = beginning.substr(0, end);
    const size_t word = declaration.find(kWord);
    if (word == std::string_view::npos) return true;
    if (declaration.rfind(kWord) != word) return false;
    const size_t quote = declaration.find_first_of("'\"", word);
    if (quote == std::string_view::npos) return false;
    const std::string_view name = declaration.substr(quote + 1);
    return std::any_of(std::begin(kEncodings), std::end(kEncodings),
                       [name](std::string_view known) { return beginsWith(name, known); });
}

// Without a byte order mark a zero byte in the first character means an encoding of wider characters.
bool isKnownEncoding(std::string_view bytes) {
    constexpr size_t kWidestCharacter = 4;  // bytes
    const bool isWide = tagIn(bytes).size() > 1;
    const bool hasZero = bytes.substr(0, kWidestCharacter).find('\0') != std::string_view::npos;
    return (isWide || !hasZero) && declaresKnownEncoding(beginningOf(bytes));
}

bool hasLongStretch(std::string_view bytes) {
    const std::string_view tag = tagIn(bytes);
    while (bytes.size() > kLongestStretch) {
        size_t last = bytes.rfind(tag, kLongestStretch);
        while (last != std::string_view::npos && last % tag.size() != 0) last = bytes.rfind(tag, last - 1);
        if (last == std::string_view::npos) return true;
        bytes.remove_prefix(last + tag.size());
    }
    return false;
}

}  // namespace

Refusal refusalOf(std::string_view bytes) {
    if (bytes.empty()) return Refusal::EMPTY;
    if (bytes.size() > kLongestFile) return Refusal::SIZE;
    if (kFirstBytes.find(bytes.front()) == std::string_view::npos) return Refusal::FIRST_BYTE;
    if (!isKnownEncoding(bytes)) return Refusal::ENCODING;
    return hasLongStretch(bytes) ? Refusal::LONG_STRETCH : Refusal::NONE;
}

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
