// SPDX-License-Identifier: Apache-2.0
// Counts what is allocated with new.
#pragma once

#include <cstdint>

namespace bench {

// Counts the allocations of the calling thread as long as it lives; one a thread at a time.
class CountedAllocations {
public:
    CountedAllocations();
    ~CountedAllocations();
    CountedAllocations(const CountedAllocations&) = delete;
    CountedAllocations& operator=(const CountedAllocations&) = delete;
};

// Of all threads, since the program began.
uint64_t allocationsCounted();

}  // namespace bench
