#include "tests/allocation/FailingAllocation.h"

#include <cstdlib>
#include <new>

namespace {

thread_local std::size_t allocationsToFailure = 0; ///< 0: none is to fail
thread_local bool allFail = false;

void* allocateOrNot(std::size_t size) noexcept {
    return test::mustAllocationFail() ? nullptr : std::malloc(size == 0 ? 1 : size);
}

void* allocate(std::size_t size) {
    void* const memory = allocateOrNot(size);
    if (!memory) {
        throw std::bad_alloc();
    }
    return memory;
}

} // namespace

void* operator new(std::size_t size) { return allocate(size); }
void* operator new[](std::size_t size) { return allocate(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return allocateOrNot(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return allocateOrNot(size); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }

namespace test {

bool mustAllocationFail() noexcept {
    if (allFail) {
        return true;
    }
    return allocationsToFailure != 0 && --allocationsToFailure == 0;
}

FailingAllocation::FailingAllocation(std::size_t number) noexcept { allocationsToFailure = number; }
FailingAllocation::~FailingAllocation() { allocationsToFailure = 0; }
bool FailingAllocation::hasFailed() const noexcept { return allocationsToFailure == 0; }

NoAllocation::NoAllocation() noexcept { allFail = true; }
NoAllocation::~NoAllocation() { allFail = false; }

} // namespace test
