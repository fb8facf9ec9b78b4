/// An object that foreign threads use for as long as its owner lets them.
#pragma once

#include "common2/util/LentBlock.h"

#include <cstring>
#include <memory>

namespace common2 {

/// Makes weak pointers to an object that somebody else owns. Who holds one locks it around each use, from any
/// thread. After `end`, no code of this library runs for such a pointer, wherever it is still held: the
/// library can be unloaded.
///
/// An ordinary `std::shared_ptr` can't promise that: a thread that lets go of it last leaves through code of
/// the library that made it.
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

    /// Nobody gets the object any more; waits for those that use it.
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
