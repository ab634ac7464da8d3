#include "tests/fakes/AllocationLimit.h"

#include <libxml/xmlmemory.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>

namespace fakes {

namespace {

thread_local size_t limit = SIZE_MAX;  // bytes
thread_local size_t made = 0;
thread_local size_t firstFailing = 0;
thread_local size_t lastFailing = 0;
thread_local Memory::Whose whose = Memory::Whose::CALLERS;

bool fails(size_t size) {
    if (whose == Memory::Whose::FAKES) return false;
    ++made;
    return size > limit || (made >= firstFailing && made <= lastFailing);
}

void* xmlAllocate(size_t size) {
    return fails(size) ? nullptr : malloc(size);
}

void* xmlReallocate(void* memory, size_t size) {
    return fails(size) ? nullptr : realloc(memory, size);
}

char* xmlDuplicate(const char* text) {
    return fails(strlen(text) + 1) ? nullptr : strdup(text);
}

}  // namespace

void limitAllocations(size_t bytes) {
    limit = bytes;
}

void failAllocation(size_t number, bool lasting) {
    made = 0;
    firstFailing = number;
    lastFailing = lasting ? SIZE_MAX : number;
}

size_t allocations() {
    return made;
}

LimitedXmlMemory::LimitedXmlMemory() {
    xmlMemSetup(free, xmlAllocate, xmlReallocate, xmlDuplicate);
}

LimitedXmlMemory::~LimitedXmlMemory() {
    xmlMemSetup(free, malloc, realloc, strdup);
}

Memory::Memory(Whose now) : previous(whose) {
    whose = now;
}

Memory::~Memory() {
    whose = previous;
}

}  // namespace fakes

void* operator new(size_t size) {
    void* const memory = operator new(size, std::nothrow);
    if (memory == nullptr) throw std::bad_alloc();
    return memory;
}

void* operator new(size_t size, const std::nothrow_t&) noexcept {
    return fakes::fails(size) ? nullptr : malloc(size == 0 ? 1 : size);
}

void operator delete(void* memory) noexcept {
    free(memory);
}

void operator delete(void* memory, size_t) noexcept {
    free(memory);
}
