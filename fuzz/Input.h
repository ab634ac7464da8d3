// SPDX-License-Identifier: Apache-2.0
// A fuzzer's bytes as a sequence of choices.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

namespace fuzz {

// Reads from the front, so that bytes added at the end do not change earlier choices. Zeros after the last byte.
class Input {
public:
    Input(const uint8_t* bytes, size_t count) : next(bytes), end(bytes + count) {}

    bool atEnd() const { return next == end; }
    uint8_t byte() { return atEnd() ? uint8_t{0} : *next++; }
    size_t below(size_t count) { return byte() % count; }
    bool yes() { return below(2) == 1; }

    // An element of a table of values that matter.
    template <typename Table>
    const auto& oneOf(const Table& table) {
        return table[below(std::size(table))];
    }

    // Up to count bytes; fewer at the end.
    std::string take(size_t count) {
        const auto length = std::min(count, static_cast<size_t>(end - next));
        std::string taken(next, next + length);
        next += length;
        return taken;
    }
    std::string rest() { return take(SIZE_MAX); }

private:
    const uint8_t* next;
    const uint8_t* const end;
};

}  // namespace fuzz
