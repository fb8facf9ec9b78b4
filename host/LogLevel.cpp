#include "host/LogLevel.h"

#include "host/HostError.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <random>
#include <system_error>

namespace host {
namespace {

namespace fs = std::filesystem;

} // namespace

PrivateFolder::PrivateFolder() {
    std::random_device random;
    std::error_code error;
    const fs::path parent = fs::temp_directory_path(error);
    bool isMade = false;
    for (int attempt = 0; !error && !isMade && attempt < 100; ++attempt) {
        folder = parent / ("wren-host-" + std::to_string(random()));
        isMade = fs::create_directory(folder, error); // false: somebody else has it
    }
    if (isMade) {
        fs::permissions(folder, fs::perms::owner_all, error);
    }
    if (!isMade || error) {
        throw HostError("cannot make a temporary folder for the log level");
    }
}

PrivateFolder::~PrivateFolder() {
    std::error_code ignored;
    fs::remove_all(folder, ignored);
}

int severityOf(const std::string& level) {
    return static_cast<int>(std::find(std::begin(logLevels), std::end(logLevels), level) -
                            std::begin(logLevels));
}

LogLevelFolder::LogLevelFolder(const std::string& level) {
    const fs::path data = folder.path() / "Norvane" / "Norvane Kestrel Suite" / "WREN";
    std::error_code error;
    fs::create_directories(data, error);
    std::ofstream file(data / "logconfig.json", std::ios::binary);
    file << "{\"global\":\"" << level << "\"}\n" << std::flush;
    if (error || !file) {
        throw HostError("cannot write the log level into " + data.string());
    }
    chosen.emplace(folder.path());
}

PluginModule loadModule(const fs::path& file, const std::string& level) {
    const LogLevelFolder folder(level);
    return PluginModule(file);
}

} // namespace host
