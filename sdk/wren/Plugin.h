/// @file
/// The module's front door: what it exports by name, and the class that every plugin object derives from.
///
/// A host loads the module, asks `GetAvailableInterfaces`, makes an object with `CreatePlugin`, asks it by
/// `SupportsInterface` for the version that it wants, casts it to that version's interface
/// (wren/PresentationPlugin.h: `static_cast`, since a `dynamic_cast` would need the module at link time),
/// drives it, and gives it back to `DisposePlugin`.
///
/// The exported functions throw nothing. Operations of an object let out what they meet: `std::bad_alloc`, a
/// `std::system_error` of the object's lock, or what a host's callback throws outside the machine. On Windows
/// the module logs it instead, and the operation returns `presentationFailed` or false.
///
/// On Windows the object's table is the one that Microsoft's compiler lays out: 16 slots, the destructor in
/// slot 1. Every compiler reads it through these headers; `dynamic_cast` and `typeid` of an object work with
/// Microsoft's compiler only.
#pragma once

#include "wren/Export.h"
#include "wren/PluginInterfaces.h"

/// Name of the C++ interface: `CreatePlugin` takes this one and no other.
inline constexpr const char* presentationInterfaceName = WREN_PRESENTATION_INTERFACE;

/// Name of the plain C interface, which has a create function of its own (wren/PresentationPluginCbased.h).
inline constexpr const char* cBasedPresentationInterfaceName = WREN_CBASED_PRESENTATION_INTERFACE;

/// Root of every plugin interface. The order of its virtual operations is fixed; the class is exported, so
/// that a host built apart from the module sees the same class.
class WREN_MODULE_API Plugin {
public:
    /// There is nothing to set up.
    Plugin();
    /// Makes another plugin that has nothing of the first.
    Plugin(const Plugin& other);
    /// Copies nothing: a plugin has no state at this level.
    Plugin& operator=(const Plugin& other);

    /// Tells whether the object can be used as the named interface in that version. Any thread.
    /// @param name NUL-terminated, may be null (false)
    /// @param version 1, 2 or 3; anything else is false
    /// @return whether it can
    virtual bool SupportsInterface(const char* name, int version) = 0;

#if defined(_WIN32) && !defined(_MSC_VER)
    /// The destructor's slot in the form of Microsoft's compiler, which has one slot for it where others have
    /// two. Called by `DisposePlugin` alone: a host never deletes a plugin.
    /// @param flags 1 to free the object's memory, too
    /// @return the object's address
    virtual void* DeletingDestructor(unsigned int flags);

protected:
    /// Called by the classes that derive from this one.
    ~Plugin();
#else
    /// Called by `DisposePlugin` alone: a host never deletes a plugin.
    virtual ~Plugin();
#endif
};

extern "C" {

/// Makes a plugin object. Each object is independent of the others; a host may hold several.
/// @param interfaceName `presentationInterfaceName`; anything else, null included, is refused
/// @return the object, owned by the host until `DisposePlugin`; null on failure, which the log explains
WREN_MODULE_API Plugin* WREN_CALL CreatePlugin(const char* interfaceName);

/// Destroys a plugin object, stopping and unregistering it first where the host has not: a running one still
/// calls back `StopDone` from within. Must not be called from inside one of the object's own callbacks.
/// @param plugin from `CreatePlugin`, or null
/// @return true
WREN_MODULE_API bool WREN_CALL DisposePlugin(Plugin* plugin);
}
