/// The counts behind a shared pointer, in memory that stays when this library is unloaded.
#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>

namespace common2 {

/// What the standard libraries of GCC and of Microsoft's compiler find behind a `std::shared_ptr`: a table of
/// functions, the number of owners, the number of observers. They count with code of their own and call
/// through the table only when the last owner or the last observer goes. What they find there is code of the
/// system, never of this library.
///
/// The maker of a block is its first owner. Any thread.
class LentBlock {
public:
    /// @return owned by the caller until `end`
    /// @throws std::bad_alloc
    static LentBlock* make();
    LentBlock(const LentBlock&) = delete;
    LentBlock& operator=(const LentBlock&) = delete;

    /// Counts one more owner. The caller is one.
    void addUse() { ++uses; }
    /// Counts one more observer.
    void addObserver() { ++observers; }

    /// Gives up the maker's part, and waits until the other owners have gone. Observers may remain.
    void end();

private:
    friend class EndedBlocks;

    static constexpr std::size_t slotCount = 5;
    struct Table {
        std::intptr_t offsetToTop = 0;
        const void* type;
        std::array<const void*, slotCount> slots;
    };

    LentBlock();

    // The system's part.
    static void* allocate();
    static Table makeTable();
    /// Gives up the maker's observation, and sees to it that the memory is freed.
    void retire();

    const void* const* slots = nullptr;
    std::atomic<std::int32_t> uses{1};
    std::atomic<std::int32_t> observers{2}; ///< one for all owners, one for the maker
    const Table table;
    LentBlock* nextEnded = nullptr;
};

} // namespace common2
