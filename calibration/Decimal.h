// Decimal numbers as text.
#pragma once

namespace vendor::kov::hardware::display_control::V1_0::implementation {

// What atof makes of a text in the "C" locale, which is the service's: the same bits for every text, where doubles are
// computed as doubles (everywhere but on the oldest PCs).
double toDecimal(const char* text);

}  // namespace vendor::kov::hardware::display_control::V1_0::implementation
