#include "host/SharedLibrary.h"

#include "host/HostError.h"

#include <windows.h>

#include <utility>

namespace host {

SharedLibrary SharedLibrary::load(const std::filesystem::path& file) {
    // An absolute path keeps the loader from searching its own folders for a bare name, and lets the module
    // find its neighbours.
    std::error_code error;
    const std::filesystem::path absolute = std::filesystem::absolute(file, error);
    const HMODULE handle = ::LoadLibraryExW(absolute.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    if (handle == nullptr) {
        throw HostError("cannot load the module: " + absolute.string() + ": error " +
                        std::to_string(::GetLastError()));
    }
    return SharedLibrary(handle);
}

std::optional<SharedLibrary> SharedLibrary::findLoaded(const std::string& name) {
    HMODULE handle = nullptr;
    if (!::GetModuleHandleExA(0, name.c_str(), &handle)) {
        return std::nullopt;
    }
    return SharedLibrary(handle);
}

SharedLibrary::SharedLibrary(SharedLibrary&& other) noexcept
    : handle(std::exchange(other.handle, nullptr)) {}

SharedLibrary& SharedLibrary::operator=(SharedLibrary&& other) noexcept {
    std::swap(handle, other.handle);
    return *this;
}

SharedLibrary::~SharedLibrary() {
    if (handle != nullptr) {
        ::FreeLibrary(static_cast<HMODULE>(handle));
    }
}

void* SharedLibrary::symbol(const char* name) const {
    return reinterpret_cast<void*>(::GetProcAddress(static_cast<HMODULE>(handle), name));
}

} // namespace host
