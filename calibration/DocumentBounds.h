// What a calibration file has to be like for libxml2 to get it.
//
// libxml2 takes time with the square of what stands in one tag or declaration, and it unpacks what is compressed. No
// tag goes past a "<": none may stand inside one, not even in quotes. So where "<" are close together tags are short.
// Encodings in which another character has the bytes of a "<", UTF-7 and ISO 2022 among them, would hide a tag's
// length.
#pragma once

#include <cstddef>
#include <string_view>

namespace vendor::kov::hardware::display_control::V1_0::implementation {

constexpr size_t kLongestFile = 1 << 20;      // bytes; several times a full calibration
constexpr size_t kLongestStretch = 16 << 10;  // bytes from one "<" to the next

// Why a file's bytes are refused.
enum class Refusal {
    NONE,
    EMPTY,
    SIZE,         // more than kLongestFile
    FIRST_BYTE,   // neither "<" nor white space nor a byte order mark's
    ENCODING,     // not one of kEncodings, or UTF-16 without a byte order mark
    LONG_STRETCH  // more than kLongestStretch
};

// The beginnings of their names, in lower case.
constexpr std::string_view kEncodings[] = {"utf-8",       "utf-16", "us-ascii", "ascii",  "iso-8859-",
                                           "windows-125", "gb2312", "gbk",      "gb18030"};

Refusal refusalOf(std::string_view bytes);

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
