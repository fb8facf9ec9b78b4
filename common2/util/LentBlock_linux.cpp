#include "common2/util/LentBlock.h"

#include <cstdlib>
#include <memory>
#include <typeinfo>

namespace common2 {
namespace {

/// Only owners look for a deleter.
void* noDeleter(const void*, const std::type_info*) { return nullptr; }

template <class Function>
const void* slot(Function* function) {
    return reinterpret_cast<const void*>(function);
}

} // namespace

void* LentBlock::allocate() { return std::malloc(sizeof(LentBlock)); }

// A virtual function is called like a function whose first argument is the object. So these of the C library
// fit: one that computes with the object's address and leaves it at that, and one that frees it.
LentBlock::Table LentBlock::makeTable() {
    const void* const nothing = slot(&::labs);
    return {.type = &typeid(std::_Sp_counted_base<>), // for sanitizers
            .slots = {/* destructors */ nothing, nothing, /* end of the object */ nothing,
                      /* end of the block */ slot(&::free), slot(&noDeleter)}};
}

void LentBlock::retire() {
    if (--observers == 0) {
        std::free(this);
    }
}

} // namespace common2
