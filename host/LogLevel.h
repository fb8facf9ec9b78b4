/// Chooses how much the module logs.
#pragma once

#include "host/PluginModule.h"
#include "host/system/DataFolder.h"
#include "host/system/PrivateFolder.h"

#include <filesystem>
#include <optional>
#include <string>

namespace host {

/// The names of the levels, from the chattiest.
inline constexpr const char* logLevels[] = {"DBG_TRACE", "DBG_INFO", "DBG_WARN", "DBG_ERROR"};

/// The severity that a level begins with.
/// @param level one of `logLevels`
int severityOf(const std::string& level);

/// The file in which a module looks for how much it is to log.
/// @param dataFolder as `DataFolder` means it
std::filesystem::path logConfigFile(const std::filesystem::path& dataFolder);

/// A private data folder for a module that is loaded while this exists, with a log configuration.
class LogSettingsFolder {
public:
    /// Makes the folder and tells the modules of it: no other thread may run yet.
    /// @param settings the text of the configuration's file
    /// @throws HostError where the folder cannot be made
    explicit LogSettingsFolder(const std::string& settings);

    const std::filesystem::path& path() const noexcept { return folder.path(); }

private:
    PrivateFolder folder{"wren-host"};
    std::optional<DataFolder> chosen;
};

/// The same where the configuration lets pass what is at or above one level.
class LogLevelFolder : public LogSettingsFolder {
public:
    /// @param level one of `logLevels`
    /// @throws HostError where the folder cannot be made
    explicit LogLevelFolder(const std::string& level);
};

/// Loads a module that logs from `level` on. It reads its configuration while it is loaded: the folder that
/// holds it is gone when this returns.
/// @throws HostError where the folder cannot be made or the module not be loaded
PluginModule loadModule(const std::filesystem::path& file, const std::string& level);

/// The same with a log configuration of any text.
PluginModule loadModuleWithSettings(const std::filesystem::path& file, const std::string& settings);

} // namespace host
