#include "host/ProgramPath.h"

#include "host/HostError.h"

#include <windows.h>

#include <string>

namespace host {

std::filesystem::path programPath() {
    std::wstring path(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length = ::GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
        if (length == 0) {
            throw HostError("cannot tell where this program stands: error " +
                            std::to_string(::GetLastError()));
        }
        if (length < path.size()) {
            path.resize(length);
            return path;
        }
        path.resize(path.size() * 2);
    }
}

} // namespace host
