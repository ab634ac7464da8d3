#include "tests/fakes/AllocationLimit.h"

#include <cstdint>
#include <cstdlib>
#include <new>

namespace {

thread_local size_t limit = SIZE_MAX;  // bytes

}  // namespace

void fakes::limitAllocations(size_t bytes) {
    limit = bytes;
}

void* operator new(size_t size) {
    void* const memory = operator new(size, std::nothrow);
    if (memory == nullptr) throw std::bad_alloc();
    return memory;
}

void* operator new(size_t size, const std::nothrow_t&) noexcept {
    return size > limit ? nullptr : malloc(size == 0 ? 1 : size);
}

void operator delete(void* memory) noexcept {
    free(memory);
}

void operator delete(void* memory, size_t) noexcept {
    free(memory);
}
