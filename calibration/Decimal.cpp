#include "calibration/Decimal.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace vendor::kov::hardware::display_control::V1_0::implementation {

// A plain number of at most 15 digits, the usual case, is that integer divided by a power of ten. Both are exact in
// double precision, so the one division rounds as a conversion has to. All other texts are left to atof.
double toDecimal(const char* text) {
    constexpr double kPowersOfTen[] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                       1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
    constexpr size_t kMostDigits = 15;
    const bool isNegative = *text == '-';
    const char* const begin = text + (isNegative ? 1 : 0);
    const char* end = begin;
    const char* point = nullptr;
    uint64_t number = 0;
    for (; (*end >= '0' && *end <= '9') || (*end == '.' && point == nullptr); ++end) {
        if (*end == '.') {
            point = end;
        } else {
            number = 10 * number + static_cast<uint64_t>(*end - '0');
        }
    }
    const auto decimals = static_cast<size_t>(point == nullptr ? 0 : end - point - 1);
    const auto digits = static_cast<size_t>(end - begin) - (point == nullptr ? 0 : 1);
    if (*end != '\0' || digits == 0 || digits > kMostDigits) return atof(text);
    const double value = static_cast<double>(static_cast<int64_t>(number)) / kPowersOfTen[decimals];
    return isNegative ? -value : value;
}

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
