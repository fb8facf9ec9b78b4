/// What the process holds of its system, for tests that watch it for what is left behind.
#pragma once

#include <cstddef>

namespace test {

/// @return threads that run; one that was joined is none of them, even if the system still lists it
std::size_t runningThreads();

struct Holdings {
    std::size_t bytes;   ///< of the heap; 0 where a sanitizer has its own
    std::size_t files;   ///< open descriptors or handles
    std::size_t threads; ///< running
    std::size_t regions; ///< of memory, mapped
    std::size_t slots;   ///< of thread-local storage, taken at run time
};
Holdings holdings();

} // namespace test
