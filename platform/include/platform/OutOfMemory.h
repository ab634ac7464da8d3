// What to do when memory runs out.
#pragma once

#include <new>
#include <stdexcept>
#include <utility>

namespace platform {

// What operation returns, or fallback when it finds no memory: it throws std::bad_alloc, or std::length_error for what
// no memory could hold. Nothing the library does for a client ends the process for want of memory.
template <typename T, typename Operation>
T unlessOutOfMemory(T fallback, Operation operation) {
    try {
        return operation();
    } catch (const std::bad_alloc&) {
        return fallback;
    } catch (const std::length_error&) {
        return fallback;
    }
}

}  // namespace platform
