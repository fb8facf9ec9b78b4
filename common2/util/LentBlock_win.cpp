#include "common2/util/LentBlock.h"

#include <windows.h>

#include <memory>
#include <mutex>
#include <typeinfo>

namespace common2 {

/// Blocks that may still have observers. The system has no function that frees the object of a virtual call,
/// so the maker stays the last observer. A block without other observers is freed when the next one ends, or
/// when this library is unloaded. A block that is still observed then is never freed.
class EndedBlocks {
public:
    EndedBlocks() = default;
    EndedBlocks(const EndedBlocks&) = delete;
    EndedBlocks& operator=(const EndedBlocks&) = delete;
    ~EndedBlocks() { sweep(); }

    void add(LentBlock* block) {
        const std::lock_guard lock(mutex);
        block->nextEnded = first;
        first = block;
        sweep();
    }

private:
    void sweep() {
        LentBlock** at = &first;
        while (*at != nullptr) {
            LentBlock* const block = *at;
            if (block->observers == 1) {
                *at = block->nextEnded;
                ::LocalFree(block);
            } else {
                at = &block->nextEnded;
            }
        }
    }

    std::mutex mutex;
    LentBlock* first = nullptr;
};

namespace {

EndedBlocks endedBlocks;

/// Only owners look for a deleter.
void* __thiscall noDeleter(const void*, const void*) { return nullptr; }

/// A function that does nothing with its object. Its plain address would be that of a jump in this library.
const void* nothing() {
    static const auto function = reinterpret_cast<const void*>(
        ::GetProcAddress(::GetModuleHandleW(L"kernel32.dll"), "GetCurrentThreadId"));
    return function;
}

} // namespace

// The process's heap, since the module's own goes with it.
void* LentBlock::allocate() { return ::LocalAlloc(LMEM_FIXED, sizeof(LentBlock)); }

// GCC's table: two destructors, end of the object, end of the block, deleter. Microsoft's: end of the object,
// end of the block, destructor, deleter.
LentBlock::Table LentBlock::makeTable() {
    const auto deleter = reinterpret_cast<const void*>(&noDeleter);
    return {.type = &typeid(std::_Sp_counted_base<>),
            .slots = {nothing(), nothing(), nothing(), deleter, deleter}};
}

void LentBlock::retire() { endedBlocks.add(this); }

} // namespace common2
