#include "common2/util/LentBlock.h"

#include <chrono>
#include <memory>
#include <new>
#include <thread>

namespace common2 {
namespace {

constexpr unsigned looksWithoutSleep = 1'000;
constexpr std::chrono::milliseconds betweenLooks{1};

/// The last owner can't report that it goes: it would do so in code of this library.
void waitForZero(const std::atomic<std::int32_t>& count) {
    for (unsigned look = 0; count.load() != 0; ++look) {
        if (look < looksWithoutSleep) {
            std::this_thread::yield();
        } else {
            std::this_thread::sleep_for(betweenLooks);
        }
    }
}

} // namespace

LentBlock* LentBlock::make() {
    void* const memory = allocate();
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return new (memory) LentBlock;
}

LentBlock::LentBlock()
    : table(makeTable()) {
    slots = table.slots.data();
    static_assert(std::atomic<std::int32_t>::is_always_lock_free);
    static_assert(offsetof(LentBlock, slots) == 0 && offsetof(LentBlock, uses) == sizeof(void*));
    static_assert(offsetof(LentBlock, observers) == sizeof(void*) + sizeof(std::int32_t));
    static_assert(sizeof(std::_Sp_counted_base<>) == sizeof(void*) + 2 * sizeof(std::int32_t));
}

void LentBlock::end() {
    if (--uses == 0) {
        --observers; // as the last owner does elsewhere
    }
    waitForZero(uses);
    retire();
}

} // namespace common2
