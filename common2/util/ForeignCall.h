/// Calls out of the module, to code that another compiler may have built.
#pragma once

#include <type_traits>

namespace common2 {

/// Runs a call. On 32-bit Windows it ends here if the callee throws an exception of Microsoft's compiler, or
/// if an exception handler further up would skip the frames in between: GCC's frames, their locks among them,
/// take no part in that. An exception of this module's own compiler passes.
/// @param call must not throw by itself; runs on this thread, once
/// @return whether the call returned
bool runForeignCall(void (*call)(void* context), void* context);

/// The same for a function object.
template <class Call>
bool foreignCall(Call&& call) {
    using Object = std::remove_reference_t<Call>;
    return runForeignCall([](void* context) { (*static_cast<Object*>(context))(); }, &call);
}

} // namespace common2
