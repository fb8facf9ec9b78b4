/// The program's own allocation, which fails when it is told to. Only programs that link
/// FailingAllocation.cpp have it.
#pragma once

#include <cstddef>

namespace test {

/// While it lives, one allocation of this thread fails: the one with that number, counted from 1. Others go
/// on.
class FailingAllocation {
public:
    explicit FailingAllocation(std::size_t number) noexcept;
    FailingAllocation(const FailingAllocation&) = delete;
    FailingAllocation& operator=(const FailingAllocation&) = delete;
    ~FailingAllocation();

    /// Whether it has come to that.
    bool hasFailed() const noexcept;
};

/// While it lives, every allocation of this thread fails.
class NoAllocation {
public:
    NoAllocation() noexcept;
    NoAllocation(const NoAllocation&) = delete;
    NoAllocation& operator=(const NoAllocation&) = delete;
    ~NoAllocation();
};

/// For an allocation that does not go through `operator new`: counts it, and says whether it has to fail.
bool mustAllocationFail() noexcept;

} // namespace test
