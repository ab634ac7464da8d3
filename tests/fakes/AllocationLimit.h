// Memory that runs out.
#pragma once

#include <cstddef>

namespace fakes {

// From now on operator new fails on this thread for anything larger than that many bytes; SIZE_MAX ends it.
void limitAllocations(size_t bytes);

// From now on one operator new of this thread fails, the first being 1, or all from there on; 0: none.
void failAllocation(size_t number, bool lasting = false);
size_t allocations();  // of this thread since failAllocation

// While one of these lives, what libxml2 allocates on this thread counts, and fails, too.
class LimitedXmlMemory {
public:
    LimitedXmlMemory();
    ~LimitedXmlMemory();
    LimitedXmlMemory(const LimitedXmlMemory&) = delete;
    LimitedXmlMemory& operator=(const LimitedXmlMemory&) = delete;
};

// As long as one of these lives, what this thread allocates is not counted and does not fail: fakes have memory of
// their own. The library called from within is the caller's again: Whose::CALLERS.
class Memory {
public:
    enum class Whose { FAKES, CALLERS };
    explicit Memory(Whose whose = Whose::FAKES);
    ~Memory();
    Memory(const Memory&) = delete;
    Memory& operator=(const Memory&) = delete;

private:
    const Whose previous;
};

}  // namespace fakes
