#include "host/system/DataFolder.h"

#include "host/system/Detour_win.h"

#include <objbase.h>
#include <shlobj.h>

#include <cwchar>
#include <string>
#include <utility>

namespace host {
namespace {

std::wstring chosenFolder; ///< what `tellDataFolder` tells

/// SHGetKnownFolderPath as modules find it while a data folder is chosen.
HRESULT WINAPI tellDataFolder(REFKNOWNFOLDERID, DWORD, HANDLE, PWSTR* path) {
    const std::size_t size = (chosenFolder.size() + 1) * sizeof(wchar_t);
    *path = static_cast<PWSTR>(::CoTaskMemAlloc(size));
    if (*path == nullptr) {
        return E_OUTOFMEMORY;
    }
    std::wmemcpy(*path, chosenFolder.c_str(), chosenFolder.size() + 1);
    return S_OK;
}

} // namespace

struct DataFolder::Before {
    explicit Before(std::wstring chosen)
        : folder(std::move(chosen)) {}
    std::wstring folder;
    Detour detour{L"shell32.dll", "SHGetKnownFolderPath", reinterpret_cast<void*>(&tellDataFolder)};
};

DataFolder::DataFolder(const std::filesystem::path& folder)
    : before(std::make_unique<Before>(chosenFolder)) {
    chosenFolder = folder.wstring();
}

DataFolder::~DataFolder() { chosenFolder = before->folder; }

std::filesystem::path programDataFolder() {
    PWSTR path = nullptr;
    const HRESULT result = ::SHGetKnownFolderPath(FOLDERID_ProgramData, 0, nullptr, &path);
    const std::filesystem::path folder = SUCCEEDED(result) ? path : L"";
    ::CoTaskMemFree(path);
    return folder;
}

} // namespace host
