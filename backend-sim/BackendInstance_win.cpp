#include "backend-sim/Backend.h"

#include <windows.h>

namespace sim {

// While a library is unloaded its threads can't be waited for, since the loader lets none of them end
// meanwhile; and when the process ends they have been killed already, holding whatever they held. So the
// library stays until the process ends, and its object is never destroyed.
Backend& Backend::instance() {
    static Backend* const backend = [] {
        HMODULE pinned = nullptr;
        static const char inThisLibrary = 0;
        ::GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN,
                             &inThisLibrary, &pinned);
        return new Backend;
    }();
    return *backend;
}

} // namespace sim
