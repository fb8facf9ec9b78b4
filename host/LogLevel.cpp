#include "host/LogLevel.h"

#include "host/HostError.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <system_error>

namespace host {

namespace fs = std::filesystem;

int severityOf(const std::string& level) {
    return static_cast<int>(std::find(std::begin(logLevels), std::end(logLevels), level) -
                            std::begin(logLevels));
}

fs::path logConfigFile(const fs::path& dataFolder) {
    return dataFolder / "Norvane" / "Norvane Kestrel Suite" / "WREN" / "logconfig.json";
}

LogSettingsFolder::LogSettingsFolder(const std::string& settings) {
    const fs::path config = logConfigFile(folder.path());
    std::error_code error;
    fs::create_directories(config.parent_path(), error);
    std::ofstream file(config, std::ios::binary);
    file << settings << std::flush;
    if (error || !file) {
        throw HostError("cannot write the log level into " + config.parent_path().string());
    }
    chosen.emplace(folder.path());
}

LogLevelFolder::LogLevelFolder(const std::string& level)
    : LogSettingsFolder(std::string("{\"global\":\"").append(level).append("\"}\n")) {}

PluginModule loadModule(const fs::path& file, const std::string& level) {
    const LogLevelFolder folder(level);
    return PluginModule(file);
}

PluginModule loadModuleWithSettings(const fs::path& file, const std::string& settings) {
    const LogSettingsFolder folder(settings);
    return PluginModule(file);
}

} // namespace host
