// SPDX-License-Identifier: Apache-2.0
#include "bench/Allocations.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace bench {

namespace {

thread_local bool counting = false;
std::atomic<uint64_t> count{0};

}  // namespace

CountedAllocations::CountedAllocations() {
    counting = true;
}

CountedAllocations::~CountedAllocations() {
    counting = false;
}

uint64_t allocationsCounted() {
    return count;
}

}  // namespace bench

void* operator new(size_t size) {
    if (bench::counting) ++bench::count;
    if (void* const memory = malloc(size == 0 ? 1 : size); memory != nullptr) return memory;
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept {
    free(memory);
}

void operator delete(void* memory, size_t /*size*/) noexcept {
    free(memory);
}
