/// What a module is and offers.
#pragma once

#include "host/PluginObject.h"

#include <boost/json/object.hpp>

#include <cstdint>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace host {

struct ModuleInfo {
    std::string path;
    std::vector<std::pair<std::string, std::int32_t>> interfaces;
    std::string identity;
    std::string label;
    std::string displayVersion;
    std::vector<std::string> exports;
};

/// Loads a module, asks it and an object that it makes, and unloads it. What it logs meanwhile is dropped.
/// @throws HostError where it cannot be loaded or does not tell
ModuleInfo examineModule(const std::filesystem::path& file, PluginInterface way);

boost::json::object jsonOf(const ModuleInfo& info);

} // namespace host
