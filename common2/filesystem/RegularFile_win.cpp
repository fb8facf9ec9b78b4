#include "common2/filesystem/RegularFile.h"

#include <windows.h>

#include <algorithm>

namespace common2 {
namespace {

std::error_code lastFileError() { return {static_cast<int>(::GetLastError()), std::system_category()}; }

HANDLE handleOf(std::intptr_t value) { return reinterpret_cast<HANDLE>(value); }

static_assert(sizeof(HANDLE) == sizeof(std::intptr_t));

} // namespace

// A server of a pipe learns nothing of whoever opens it, and may not act in their name.
RegularFile::RegularFile(const std::filesystem::path& path, std::error_code& error)
    : handle(reinterpret_cast<std::intptr_t>(
          ::CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                        nullptr, OPEN_EXISTING, SECURITY_SQOS_PRESENT | SECURITY_ANONYMOUS, nullptr))) {
    error.clear();
    if (handleOf(handle) == INVALID_HANDLE_VALUE) {
        error = lastFileError();
    } else if (::GetFileType(handleOf(handle)) != FILE_TYPE_DISK) {
        error = std::make_error_code(std::errc::invalid_argument);
    }
}

RegularFile::~RegularFile() {
    if (handleOf(handle) != INVALID_HANDLE_VALUE) {
        ::CloseHandle(handleOf(handle));
    }
}

std::size_t RegularFile::readSome(char* bytes, std::size_t size, std::error_code& error) {
    DWORD count = 0;
    const auto wanted = static_cast<DWORD>(std::min<std::size_t>(size, MAXDWORD));
    if (!::ReadFile(handleOf(handle), bytes, wanted, &count, nullptr)) {
        error = lastFileError();
        return 0;
    }
    return count;
}

} // namespace common2
