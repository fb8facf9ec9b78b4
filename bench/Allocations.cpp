#include "bench/Allocations.h"

#include <cstddef>

// Every library of the process finds these before the C library's own. That one allocates with the functions
// behind them, and frees what they gave.

namespace {

thread_local unsigned long count = 0;

} // namespace

extern "C" {

void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t number, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);

__attribute__((visibility("default"))) void* malloc(std::size_t size) {
    ++count;
    return __libc_malloc(size);
}
__attribute__((visibility("default"))) void* calloc(std::size_t number, std::size_t size) {
    ++count;
    return __libc_calloc(number, size);
}
__attribute__((visibility("default"))) void* realloc(void* memory, std::size_t size) {
    ++count;
    return __libc_realloc(memory, size);
}
__attribute__((visibility("default"))) void* aligned_alloc(std::size_t alignment, std::size_t size) {
    ++count;
    return __libc_memalign(alignment, size);
}
}

unsigned long bench::allocations() noexcept { return count; }
