// What a calibration file has to be like for libxml2 to get it.
//
// libxml2 takes time with the square of what stands in one tag or declaration, and with the product of elements and the
// attributes that are declared for them; and it unpacks what is compressed. No tag goes past a "<": none may stand
// inside one, not even in quotes. So where "<" are close together tags are short.
#pragma once

#include <cstddef>
#include <string_view>

namespace vendor::kov::hardware::display_control::V1_0::implementation {

constexpr size_t kLongestFile = 1 << 20;      // bytes; several times a full calibration
constexpr size_t kLongestStretch = 16 << 10;  // characters from one "<" to the next

// Why a file is refused.
enum class Refusal {
    NONE,
    EMPTY,
    SIZE,          // more than kLongestFile
    FIRST_BYTE,    // neither "<" nor white space nor a byte order mark's
    ENCODING,      // not known to leave the bytes of a "<" to it alone, as UTF-7 and ISO 2022 do not
    LONG_STRETCH,  // more than kLongestStretch
    DECLARATION    // of attributes, or of a parameter entity, which could hold one
};

// bytes are those of the whole file.
Refusal refusalOf(std::string_view bytes);

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
