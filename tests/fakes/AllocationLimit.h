// Memory that runs out.
#pragma once

#include <cstddef>

namespace fakes {

// As long as it lives, operator new fails on this thread for anything larger than that many bytes.
class AllocationLimit {
public:
    explicit AllocationLimit(size_t bytes);
    ~AllocationLimit();
};

}  // namespace fakes
