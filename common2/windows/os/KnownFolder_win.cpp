#include "common2/windows/os/KnownFolder.h"

#include "common2/logging/Common2Loggers.h"

#include <initguid.h> // the folders' ids become data of this file

#include <windows.h>

#include <knownfolders.h>
#include <objbase.h>
#include <shlobj.h>

#include <array>

namespace {

/// By id.
const std::array<const KNOWNFOLDERID*, KnownFolder::UserProfile + 1> folderIds{
    &FOLDERID_ProgramFiles, &FOLDERID_ProgramFilesX86, &FOLDERID_System,  &FOLDERID_SystemX86,
    &FOLDERID_ProgramData,  &FOLDERID_LocalAppData,    &FOLDERID_Profile,
};

HRESULT lookUp(int id, std::filesystem::path& path) {
    const auto index = static_cast<std::size_t>(id);
    if (index >= folderIds.size()) {
        return E_INVALIDARG;
    }
    PWSTR text = nullptr;
    const HRESULT result = ::SHGetKnownFolderPath(*folderIds[index], 0, nullptr, &text);
    if (SUCCEEDED(result)) {
        path = text;
    }
    ::CoTaskMemFree(text);
    return result;
}

} // namespace

std::filesystem::path KnownFolder::GetPath(int id) {
    std::filesystem::path path;
    const HRESULT result = lookUp(id, path);
    if (FAILED(result)) {
        COMMON2_LOG(DBG_ERROR, "KnownFolder::GetPath") << "SHGetKnownFolderPath failed: " << result;
    }
    return path;
}
