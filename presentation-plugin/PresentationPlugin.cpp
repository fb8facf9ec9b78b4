#include "Plugins/PresentationPluginCommon/PresentationPluginCbasedMethods.h"
#include "common/PluginIdentity.h"
#include "common/api/QuillApiResultText.h"
#include "common/logging/QuillLogging.h"
#include "common2/logging/Common2Loggers.h"
#include "presentation-plugin/ClassTable.h"
#include "presentation-plugin/PresentationPluginImpl.h"
#include "wren/Plugin.h"

#include <array>
#include <exception>
#include <string_view>

namespace {

/// Logging stands from the module's load to its unload.
const QuillBaseLogging moduleLogging(pluginIdentity::logSource);

constexpr std::int32_t interfaceVersion = 3;

constexpr std::array<PluginInterfaceEntry, 2> interfaces{{
    {presentationInterfaceName, interfaceVersion},
    {cBasedPresentationInterfaceName, interfaceVersion},
}};

/// The checks that every create function begins with.
bool isWanted(const char* interfaceName, std::string_view offered, std::string_view function) {
    if (!interfaceName) {
        COMMON2_LOG(DBG_ERROR, function) << "NULL interface name";
        return false;
    }
    if (interfaceName != offered) {
        COMMON2_LOG(DBG_ERROR, function) << "Wrong create method for interface '" << interfaceName << '\'';
        return false;
    }
    COMMON2_LOG(DBG_TRACE, function) << "Creating Plugin";
    return true;
}

} // namespace

PluginInterfaceList GetAvailableInterfaces() {
    return {interfaces.data(), static_cast<std::int32_t>(interfaces.size())};
}

Plugin* CreatePlugin(const char* interfaceName) {
    constexpr std::string_view function = "CreatePlugin";
    if (!isWanted(interfaceName, presentationInterfaceName, function)) {
        return nullptr;
    }
    try {
        std::weak_ptr<IQuillApiFactory> factory;
        const QuillApiResult code = GetQuillApiFactory(factory);
        if (code == QuillApiResult::Success) {
            return asPlugin(new PresentationPluginImpl(factory));
        }
        COMMON2_LOG(DBG_ERROR, function) << "GetQuillApiFactory returned error " << quillApiResultName(code);
    } catch (const std::exception& failure) {
        COMMON2_LOG(DBG_ERROR, function) << "Couldn't create the plugin: " << failure.what();
    } catch (...) {
        COMMON2_LOG(DBG_ERROR, function) << "Couldn't create the plugin: unknown exception";
    }
    return nullptr;
}

bool DisposePlugin(Plugin* plugin) {
    COMMON2_LOG(DBG_TRACE, "DisposePlugin") << "Disposing Plugin";
    destroyPlugin(plugin);
    return true;
}

PresentationPluginCbasedMethods* CreateCbasedPlugin(const char* interfaceName) {
    return isWanted(interfaceName, cBasedPresentationInterfaceName, "CreateCbasedPlugin")
               ? CreateCbasedPresentationPlugin()
               : nullptr;
}

bool DisposeCbasedPlugin(PresentationPluginCbasedMethods* methods) {
    COMMON2_LOG(DBG_TRACE, "DisposeCbasedPlugin") << "Disposing Plugin";
    return DisposeCbasedPresentationPlugin(methods);
}
