// Memory that runs out.
#pragma once

#include <cstddef>

namespace fakes {

// From now on operator new fails on this thread for anything larger than that many bytes; SIZE_MAX ends it.
void limitAllocations(size_t bytes);

}  // namespace fakes
