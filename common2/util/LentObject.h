/// An object that foreign threads use for as long as its owner lets them.
#pragma once

#include "common2/util/LentBlock.h"

#include <cstring>
#include <memory>

namespace common2 {

/// Makes weak pointers to an object that somebody else owns. Their holders lock them around each use, on any
/// thread. After `end`, no code of this library runs for such a pointer, wherever it is still held: the
/// library can be unloaded.
///
/// An ordinary `std::shared_ptr` can't promise that: the thread that drops the last one runs code of the
/// library that made it.
template <class Object>
class LentObject {
public:
    /// @param object outlives this
    explicit LentObject(Object& object)
        : lent(&object)
        , block(LentBlock::make()) {}
    LentObject(const LentObject&) = delete;
    LentObject& operator=(const LentObject&) = delete;
    ~LentObject() { end(); }

    /// Before `end` only.
    std::weak_ptr<Object> pointer() const {
        std::shared_ptr<Object> made;
        void* const parts[] = {lent, block};
        static_assert(sizeof made == sizeof parts);
        block->addUse();
        std::memcpy(static_cast<void*>(&made), parts, sizeof parts);
        return made;
    }

    /// Pointers no longer lead to the object; waits for those that are in use.
    void end() {
        if (block != nullptr) {
            block->end();
            block = nullptr;
        }
    }

private:
    Object* const lent;
    LentBlock* block;
};

} // namespace common2
