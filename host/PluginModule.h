/// The module under the host: its exported functions.
#pragma once

#include "host/SharedLibrary.h"
#include "wren/PresentationPlugin.h"
#include "wren/PresentationPluginCbased.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

namespace host {

/// A loaded plugin module. Loading runs its start-up code, unloading its end.
class PluginModule {
public:
    /// @throws HostError for a file that cannot be loaded or that lacks an exported function
    explicit PluginModule(const std::filesystem::path& file);

    PluginInterfaceList interfaces() const { return getInterfaces(); }

    /// @throws HostError where the module's class has a table that hosts of this platform can't use
    void requireUsableClass() const;

    /// `CreatePlugin`, as the interface that the host uses; the object goes to `dispose`.
    /// @param name NUL-terminated or null
    /// @return null where the module refused
    /// @throws HostError where the class can't be used or the object does not offer version 3 of it
    IPresentationPluginV3* create(const char* name) const;

    /// `DisposePlugin`.
    /// @param plugin from `create`, or null
    bool dispose(Plugin* plugin) const { return disposePlugin(plugin); }

    /// Whether the module offers its record of C functions too.
    bool hasCRecord() const { return createRecord != nullptr && disposeRecord != nullptr; }

    /// `CreateCbasedPlugin`; the record goes to `disposeCbased`.
    /// @param name NUL-terminated or null
    /// @return null where the module refused
    /// @throws HostError where the module has no such function, or its record is not of version 3
    PresentationPluginCbasedMethods* createCbased(const char* name) const;

    /// `DisposeCbasedPlugin`.
    /// @param record any address
    /// @throws HostError where the module has no such function
    bool disposeCbased(PresentationPluginCbasedMethods* record) const;

private:
    SharedLibrary library;
    std::optional<SharedLibrary>
        backend; ///< the module's; loaded with it, for what the host asks of it itself
    decltype(&GetAvailableInterfaces) getInterfaces;
    decltype(&CreatePlugin) createPlugin;
    decltype(&DisposePlugin) disposePlugin;
    decltype(&CreateCbasedPlugin) createRecord;   ///< null where the module lacks it
    decltype(&DisposeCbasedPlugin) disposeRecord; ///< likewise
};

/// A plugin object that is disposed of where it goes out of use.
class PluginOwner {
public:
    explicit PluginOwner(const PluginModule& from)
        : module(&from) {}
    void operator()(IPresentationPluginV3* plugin) const { module->dispose(plugin); }

private:
    const PluginModule* module;
};
using OwnedPlugin = std::unique_ptr<IPresentationPluginV3, PluginOwner>;

/// The module that was built along with this program: beside it, in ../lib.
std::filesystem::path defaultModulePath();

} // namespace host
