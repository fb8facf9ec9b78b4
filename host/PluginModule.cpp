#include "host/PluginModule.h"

#include "host/HostError.h"
#include "host/LibraryNames.h"
#include "host/ProgramPath.h"

namespace host {
namespace {

constexpr int usedVersion = 3;

template <class Function>
Function required(const SharedLibrary& library, const char* name, const std::filesystem::path& file) {
    const auto function = library.function<Function>(name);
    if (function == nullptr) {
        throw HostError("not a plugin module: " + file.string() + " exports no " + name);
    }
    return function;
}

/// The backend library that the module has or will have: the process's, or the one beside the module.
std::optional<SharedLibrary> backendOf(const std::filesystem::path& module) {
    if (auto loaded = SharedLibrary::findLoaded(backendLibraryName)) {
        return loaded;
    }
    const std::filesystem::path beside = module.parent_path() / backendLibraryName;
    std::error_code none;
    return std::filesystem::exists(beside, none) ? std::optional(SharedLibrary::load(beside)) : std::nullopt;
}

} // namespace

PluginModule::PluginModule(const std::filesystem::path& file)
    : library(SharedLibrary::load(file))
    , backend(backendOf(file))
    , getInterfaces(required<decltype(getInterfaces)>(library, "GetAvailableInterfaces", file))
    , createPlugin(required<decltype(createPlugin)>(library, "CreatePlugin", file))
    , disposePlugin(required<decltype(disposePlugin)>(library, "DisposePlugin", file))
    , createRecord(library.function<decltype(createRecord)>("CreateCbasedPlugin"))
    , disposeRecord(library.function<decltype(disposeRecord)>("DisposeCbasedPlugin")) {}

void PluginModule::requireUsableClass() const {
    if (otherTableExport != nullptr && library.symbol(otherTableExport) != nullptr) {
        throw HostError("the module's class has the table of another compiler, with two slots for its "
                        "destructor: use --interface c");
    }
}

IPresentationPluginV3* PluginModule::create(const char* name) const {
    requireUsableClass();
    Plugin* plugin = createPlugin(name);
    if (plugin != nullptr && !plugin->SupportsInterface(presentationInterfaceName, usedVersion)) {
        disposePlugin(plugin);
        throw HostError("the module's object does not offer version 3 of " +
                        std::string(presentationInterfaceName));
    }
    // What the object just promised. A dynamic_cast would need the class's type information at link time,
    // and that stands in a module which is only known at run time.
    return static_cast<IPresentationPluginV3*>(plugin);
}

PresentationPluginCbasedMethods* PluginModule::createCbased(const char* name) const {
    if (!hasCRecord()) {
        throw HostError("the module exports no CreateCbasedPlugin");
    }
    PresentationPluginCbasedMethods* record = createRecord(name);
    if (record != nullptr &&
        (record->size < sizeof *record ||
         !record->SupportsInterface(record->handle, cBasedPresentationInterfaceName, usedVersion))) {
        disposeRecord(record);
        throw HostError("the module's record does not offer version 3 of " +
                        std::string(cBasedPresentationInterfaceName));
    }
    return record;
}

bool PluginModule::disposeCbased(PresentationPluginCbasedMethods* record) const {
    if (!hasCRecord()) {
        throw HostError("the module exports no DisposeCbasedPlugin");
    }
    return disposeRecord(record);
}

std::filesystem::path defaultModulePath() { return moduleBeside(programPath().parent_path()); }

} // namespace host
