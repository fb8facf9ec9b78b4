/// A plugin object as the host drives it, through whichever of the module's interfaces it was made.
#pragma once

#include "host/HostCallbacks.h"
#include "host/PluginModule.h"
#include "wren/PresentationPluginCbased.h"

#include <cstdint>
#include <memory>

namespace host {

/// The interfaces that a module offers.
enum class PluginInterface {
    Cpp, ///< a class: `CreatePlugin`
    C,   ///< a record of functions: `CreateCbasedPlugin`
};

/// The interface's name on the command line.
constexpr std::string_view interfaceName(PluginInterface way) {
    return way == PluginInterface::C ? "c" : "cpp";
}

/// One plugin object. The operations are those of the plugin's interface (wren/PresentationPlugin.h), with
/// the same results. An object that was not disposed of is so at its end.
class PluginObject {
public:
    PluginObject() = default;
    PluginObject(const PluginObject&) = delete;
    PluginObject& operator=(const PluginObject&) = delete;
    virtual ~PluginObject() = default;

    virtual bool SupportsInterface(const char* name, int version) = 0;
    /// @param callbacks null passes a null pointer; otherwise it must outlive the registration
    /// @param translator likewise
    virtual std::int32_t Register(const char* arguments, std::uintptr_t hostHandle, HostCallbacks* callbacks,
                                  HostTranslator* translator) = 0;
    virtual std::int32_t Start() = 0;
    virtual std::int32_t Stop(std::uint32_t reason) = 0;
    virtual std::int32_t Unregister() = 0;
    virtual bool IsUIEnabled() = 0;
    virtual std::int32_t GetIdentity(char* buffer, std::uint32_t* size) = 0;
    virtual std::int32_t GetLabel(char* buffer, std::uint32_t* size) = 0;
    virtual std::int32_t GetDisplayVersion(char* buffer, std::uint32_t* size) = 0;
    virtual std::int32_t Encrypt(std::uintptr_t first, std::uintptr_t second, std::uintptr_t third,
                                 std::uintptr_t fourth) = 0;
    virtual std::int32_t Decrypt(std::uintptr_t first, std::uintptr_t second, char* output,
                                 std::uint32_t* outputSize) = 0;
    virtual std::int32_t EventNotification(const char* xml) = 0;
    virtual bool IsMultiUserModeEnabled() = 0;
    virtual std::int32_t GetPendingApprovalData(std::uintptr_t first, std::uintptr_t second) = 0;
    virtual std::int32_t ApprovalEventNotification(std::uintptr_t first) = 0;

    /// Gives the object back to the module. No operation may follow.
    /// @return what the module answers
    virtual bool dispose() = 0;

    /// The object's record of functions; null where it was made as a class.
    virtual PresentationPluginCbasedMethods* record() = 0;
};

/// Makes an object.
/// @param module must outlive the object
/// @param name for the create function of that interface; NUL-terminated or null
/// @return null where the module refused
/// @throws HostError where the module lacks the interface or its object does not offer version 3
std::unique_ptr<PluginObject> makePlugin(const PluginModule& module, PluginInterface use, const char* name);

/// The same by the interface's own name.
std::unique_ptr<PluginObject> makePlugin(const PluginModule& module, PluginInterface use);

/// Passes a null pointer to the dispose function of that interface.
/// @throws HostError where the module lacks the interface
bool disposeOfNull(const PluginModule& module, PluginInterface use);

/// The operations of a record, called with a null handle. Owns nothing.
/// @param record must outlive the object
std::unique_ptr<PluginObject> behindNullHandle(PresentationPluginCbasedMethods& record);

} // namespace host
