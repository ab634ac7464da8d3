#include "calibration/DocumentBounds.h"

#include <algorithm>
#include <iterator>
#include <string>

namespace vendor::kov::hardware::display_control::V1_0::implementation {

namespace {

constexpr std::string_view kFirstBytes = "< \t\r\n\xEF\xFE\xFF";
constexpr std::string_view kBlanks = " \t\r\n";
constexpr std::string_view kLittleEndianMark = "\xFF\xFE";
constexpr std::string_view kBigEndianMark = "\xFE\xFF";
constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

// How the names of encodings begin that have every ASCII character as its byte, and no other with that of "<"; UTF-16
// stands here for documents that begin with its mark. Names are compared by their letters and digits in lower case.
constexpr std::string_view kEncodings[] = {"utf8",    "utf16",   "ascii", "usascii",   "iso8859", "isolatin", "latin",
                                           "cp125",   "windows", "koi8",  "macintosh", "gb2312",  "gbk",      "cp936",
                                           "gb18030", "big5",    "euc",   "shiftjis",  "sjis",    "tis620",   "viscii"};

bool beginsWith(std::string_view text, std::string_view beginning) {
    return text.substr(0, beginning.size()) == beginning;
}

bool isUtf16(std::string_view bytes) {
    return beginsWith(bytes, kLittleEndianMark) || beginsWith(bytes, kBigEndianMark);
}

// The ASCII characters of UTF-16 text, and a blank for each other unit.
std::string asciiOf(std::string_view utf16) {
    const size_t low = beginsWith(utf16, kLittleEndianMark) ? 0 : 1;
    std::string text;
    text.reserve(utf16.size() / 2);
    for (size_t i = 2; i + 1 < utf16.size(); i += 2) {
        const bool isAscii = utf16[i + 1 - low] == 0 && utf16[i + low] > 0;
        text += isAscii ? utf16[i + low] : ' ';
    }
    return text;
}

// The same whatever the process's locale.
std::string plainName(std::string_view name) {
    std::string plain;
    for (const char c : name) {
        const char lower = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
        if ((lower >= 'a' && lower <= 'z') || (lower >= '0' && lower <= '9')) plain += lower;
    }
    return plain;
}

// Whether the XML declaration names no encoding or one of kEncodings.
bool declaresKnownEncoding(std::string_view text) {
    constexpr std::string_view kBegin = "<?xml";
    constexpr std::string_view kWord = "encoding";
    constexpr size_t kLongest = 512;  // characters; several times a declaration
    text = text.substr(0, kLongest);
    if (!beginsWith(text, kBegin) || text.find_first_of(kBlanks) != kBegin.size()) return true;
    const size_t end = text.find("?>");
    if (end == std::string_view::npos) return false;
    const std::string_view declaration = text.substr(0, end);
    const size_t word = declaration.find(kWord);
    if (word == std::string_view::npos) return true;
    if (declaration.rfind(kWord) != word) return false;
    const size_t quote = declaration.find_first_of("'\"", word);
    if (quote == std::string_view::npos) return false;
    const std::string_view value = declaration.substr(quote + 1);
    const std::string name = plainName(value.substr(0, value.find_first_of("'\"")));
    return std::any_of(std::begin(kEncodings), std::end(kEncodings),
                       [&name](std::string_view known) { return beginsWith(name, known); });
}

bool hasLongStretch(std::string_view text) {
    while (text.size() > kLongestStretch) {
        const size_t last = text.rfind('<', kLongestStretch);
        if (last == std::string_view::npos) return true;
        text.remove_prefix(last + 1);
    }
    return false;
}

bool hasCostlyDeclaration(std::string_view text) {
    constexpr std::string_view kAttributes = "!ATTLIST";
    constexpr std::string_view kEntity = "!ENTITY";
    for (size_t at = text.find('!'); at != std::string_view::npos; at = text.find('!', at + 1)) {
        const std::string_view rest = text.substr(at);
        if (beginsWith(rest, kAttributes)) return true;
        if (!beginsWith(rest, kEntity)) continue;
        const size_t name = rest.find_first_not_of(kBlanks, kEntity.size());
        if (name != std::string_view::npos && rest[name] == '%') return true;
    }
    return false;
}

Refusal refusalOfText(std::string_view text) {
    if (!declaresKnownEncoding(text)) return Refusal::ENCODING;
    if (hasLongStretch(text)) return Refusal::LONG_STRETCH;
    return hasCostlyDeclaration(text) ? Refusal::DECLARATION : Refusal::NONE;
}

}  // namespace

Refusal refusalOf(std::string_view bytes) {
    if (bytes.empty()) return Refusal::EMPTY;
    if (bytes.size() > kLongestFile) return Refusal::SIZE;
    if (kFirstBytes.find(bytes.front()) == std::string_view::npos) return Refusal::FIRST_BYTE;
    if (isUtf16(bytes)) return refusalOfText(asciiOf(bytes));
    // A zero byte in the first character means an encoding of wider ones.
    constexpr size_t kWidest = 4;
    if (bytes.substr(0, kWidest).find('\0') != std::string_view::npos) return Refusal::ENCODING;
    return refusalOfText(beginsWith(bytes, kUtf8Mark) ? bytes.substr(kUtf8Mark.size()) : bytes);
}

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
