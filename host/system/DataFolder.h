/// Where a module finds its data.
#pragma once

#include <filesystem>
#include <memory>

namespace host {

/// While it exists, the modules of this process find their data below a folder of the host's choice. The last
/// one made counts. No other thread may be loading a module, or asking for the folder, at either end of this
/// object's life.
class DataFolder {
public:
    /// @throws HostError where the modules can't be told
    explicit DataFolder(const std::filesystem::path& folder);
    DataFolder(const DataFolder&) = delete;
    DataFolder& operator=(const DataFolder&) = delete;
    ~DataFolder();

private:
    struct Before;
    std::unique_ptr<const Before> before;
};

/// Where the modules of this process find their data.
/// @return empty where the system does not tell
std::filesystem::path programDataFolder();

} // namespace host
