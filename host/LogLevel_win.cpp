#include "host/LogLevel.h"

#include "host/Detour_win.h"
#include "host/HostError.h"

#include <objbase.h>
#include <shlobj.h>

#include <atomic>
#include <cwchar>
#include <fstream>
#include <system_error>

namespace host {
namespace {

namespace fs = std::filesystem;

std::atomic<unsigned> folderCount = 0;
std::wstring dataFolder; ///< what `tellDataFolder` tells

fs::path makePrivateFolder() {
    std::error_code error;
    const fs::path folder =
        fs::temp_directory_path(error) /
        ("wren-host-" + std::to_string(::GetCurrentProcessId()) + "-" + std::to_string(++folderCount));
    if (error || !fs::create_directory(folder, error)) {
        throw HostError("cannot make a temporary folder for the log level");
    }
    return folder;
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

/// SHGetKnownFolderPath as a module finds it while it is loaded: its data lies in the private folder.
HRESULT WINAPI tellDataFolder(REFKNOWNFOLDERID, DWORD, HANDLE, PWSTR* path) {
    const std::size_t size = (dataFolder.size() + 1) * sizeof(wchar_t);
    *path = static_cast<PWSTR>(::CoTaskMemAlloc(size));
    if (*path == nullptr) {
        return E_OUTOFMEMORY;
    }
    std::wmemcpy(*path, dataFolder.c_str(), dataFolder.size() + 1);
    return S_OK;
}

} // namespace

LogLevelFolder::LogLevelFolder(const std::string& level)
    : folder(makePrivateFolder()) {
    try {
        writeConfiguration(folder, level);
    } catch (...) {
        std::error_code ignored;
        fs::remove_all(folder, ignored);
        throw;
    }
    dataFolder = folder.wstring();
}

LogLevelFolder::~LogLevelFolder() {
    std::error_code ignored;
    fs::remove_all(folder, ignored);
}

PluginModule loadModule(const fs::path& file, const std::string& level) {
    const LogLevelFolder folder(level);
    const Detour detour(L"shell32.dll", "SHGetKnownFolderPath", reinterpret_cast<void*>(&tellDataFolder));
    return PluginModule(file);
}

} // namespace host
