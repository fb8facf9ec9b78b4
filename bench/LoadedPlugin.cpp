#include "bench/LoadedPlugin.h"

#include "bench/SilentBackend.h"
#include "host/LogLevel.h"

#include <stdexcept>

namespace bench {
namespace {

std::shared_ptr<IQuillApiCallbacks> start(IPresentationPluginV3* plugin, KeepingHost& host) {
    if (plugin == nullptr || plugin->Register("", 1, &host, &host) != presentationDone ||
        plugin->Start() != presentationDone) {
        throw std::runtime_error("the plugin does not start");
    }
    return takeReceiver();
}

} // namespace

std::int32_t KeepingHost::Notify(std::uintptr_t, const char* xml) {
    if (keeps) {
        notices.emplace_back(xml);
    }
    return 0;
}

LoadedPlugin::LoadedPlugin()
    : module(host::loadModule(WREN_MODULE_FILE, "DBG_INFO"))
    , plugin(module.create(presentationInterfaceName), host::PluginOwner(module))
    , receiver(start(plugin.get(), keepingHost)) {}

} // namespace bench
