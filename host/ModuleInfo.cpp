#include "host/ModuleInfo.h"

#include "host/ExportedSymbols.h"
#include "host/HostError.h"
#include "host/LogTap.h"
#include "host/PluginModule.h"

#include <boost/json/array.hpp>
#include <boost/json/value.hpp>

#include <cstring>

namespace host {
namespace {

namespace json = boost::json;

using Getter = std::int32_t (PluginObject::*)(char*, std::uint32_t*);

/// A getter's text: asks for the size first.
std::string textOf(PluginObject& plugin, Getter getter) {
    std::uint32_t size = 0;
    (plugin.*getter)(nullptr, &size);
    std::string text(size, '\0');
    if (size == 0 || (plugin.*getter)(text.data(), &size) != presentationDone) {
        throw HostError("the plugin object does not tell about itself");
    }
    text.resize(std::strlen(text.c_str()));
    return text;
}

} // namespace

ModuleInfo examineModule(const std::filesystem::path& file, PluginInterface way) {
    ModuleInfo info;
    info.path = file.string();
    info.exports = exportedSymbols(file);
    const LogTap silence([](const LogRecord&) {});
    const PluginModule module(file);
    const PluginInterfaceList list = module.interfaces();
    for (std::int32_t i = 0; i < list.count; ++i) {
        info.interfaces.emplace_back(list.entries[i].name, list.entries[i].version);
    }
    const auto plugin = makePlugin(module, way);
    if (!plugin) {
        throw HostError("the module makes no plugin object: " + info.path);
    }
    info.identity = textOf(*plugin, &PluginObject::GetIdentity);
    info.label = textOf(*plugin, &PluginObject::GetLabel);
    info.displayVersion = textOf(*plugin, &PluginObject::GetDisplayVersion);
    return info;
}

json::object jsonOf(const ModuleInfo& info) {
    json::array interfaces;
    for (const auto& [name, version] : info.interfaces) {
        interfaces.push_back(json::object{{"name", name}, {"version", version}});
    }
    return {
        {"module", info.path},
        {"interfaces", std::move(interfaces)},
        {"identity", info.identity},
        {"label", info.label},
        {"display_version", info.displayVersion},
        {"exports", json::array(info.exports.begin(), info.exports.end())},
    };
}

} // namespace host
