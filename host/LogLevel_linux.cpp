#include "host/LogLevel.h"

#include "host/HostError.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <system_error>

namespace host {
namespace {

namespace fs = std::filesystem;

/// Where the module looks for its data folder before it asks the system.
constexpr const char* programDataVariable = "WREN_PROGRAM_DATA";

fs::path makePrivateFolder() {
    std::error_code error;
    std::string name = (fs::temp_directory_path(error) / "wren-host-XXXXXX").string();
    if (error || ::mkdtemp(name.data()) == nullptr) {
        throw HostError("cannot make a temporary folder for the log level");
    }
    return name;
}

void writeConfiguration(const fs::path& programData, const std::string& level) {
    const fs::path folder = programData / "Norvane" / "Norvane Kestrel Suite" / "WREN";
    std::error_code error;
    fs::create_directories(folder, error);
    std::ofstream file(folder / "logconfig.json", std::ios::binary);
    file << "{\"global\":\"" << level << "\"}\n" << std::flush;
    if (error || !file) {
        throw HostError("cannot write the log level into " + folder.string());
    }
}

} // namespace

int severityOf(const std::string& level) {
    return static_cast<int>(std::find(std::begin(logLevels), std::end(logLevels), level) -
                            std::begin(logLevels));
}

LogLevelFolder::LogLevelFolder(const std::string& level)
    : folder(makePrivateFolder()) {
    try {
        writeConfiguration(folder, level);
    } catch (...) {
        std::error_code ignored;
        fs::remove_all(folder, ignored);
        throw;
    }
    ::setenv(programDataVariable, folder.c_str(), 1);
}

LogLevelFolder::~LogLevelFolder() {
    std::error_code ignored;
    fs::remove_all(folder, ignored);
}

PluginModule loadModule(const fs::path& file, const std::string& level) {
    const LogLevelFolder folder(level);
    return PluginModule(file);
}

} // namespace host
