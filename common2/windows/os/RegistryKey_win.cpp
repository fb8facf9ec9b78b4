#include "common2/windows/os/RegistryKey.h"

#include "common2/util/WideText.h"

#include <windows.h>

#include <optional>

struct RegistryKey::Handle {
    HKEY key = nullptr;

    Handle() = default;
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    ~Handle() {
        if (key) {
            ::RegCloseKey(key);
        }
    }
};

static_assert(RegistryKey::readAccess == KEY_READ);
static_assert(RegistryKey::readAccessOf64Bit == (KEY_READ | KEY_WOW64_64KEY));

namespace {

/// Reads a value, asking its size first.
/// @param wanted the value's type; none takes a value of any
std::uint32_t query(HKEY key, const wchar_t* name, std::optional<DWORD> wanted,
                    std::vector<unsigned char>& bytes) {
    DWORD type = 0;
    DWORD size = 0;
    LSTATUS status = ::RegQueryValueExW(key, name, nullptr, &type, nullptr, &size);
    if (status == ERROR_SUCCESS && wanted && type != *wanted) {
        status = ERROR_INVALID_DATA;
    }
    if (status == ERROR_SUCCESS && size > 0) {
        bytes.resize(size);
        status = ::RegQueryValueExW(key, name, nullptr, &type, bytes.data(), &size);
        bytes.resize(status == ERROR_SUCCESS ? size : 0);
    }
    return static_cast<std::uint32_t>(status);
}

} // namespace

RegistryKey::RegistryKey() = default;
RegistryKey::~RegistryKey() = default;

std::uint32_t RegistryKey::Open(const wchar_t* path, std::uint32_t access) {
    handle.reset();
    auto opened = std::make_unique<Handle>();
    const LSTATUS status = ::RegOpenKeyExW(HKEY_LOCAL_MACHINE, path, 0, access, &opened->key);
    if (status == ERROR_SUCCESS) {
        handle = std::move(opened);
    }
    return static_cast<std::uint32_t>(status);
}

std::uint32_t RegistryKey::QueryValue(const wchar_t* name, std::vector<unsigned char>& bytes) const {
    bytes.clear();
    return handle ? query(handle->key, name, std::nullopt, bytes) : ERROR_INVALID_HANDLE;
}

std::uint32_t RegistryKey::QueryBinaryValue(const wchar_t* name, std::vector<unsigned char>& bytes) const {
    bytes.clear();
    return handle ? query(handle->key, name, REG_BINARY, bytes) : ERROR_INVALID_HANDLE;
}

std::uint32_t RegistryKey::QueryStringValue(const wchar_t* name, std::string& text) const {
    text.clear();
    std::vector<unsigned char> bytes;
    const std::uint32_t error = handle ? query(handle->key, name, REG_SZ, bytes) : ERROR_INVALID_HANDLE;
    // The value's units end with a NUL, if whoever stored it took the trouble.
    std::wstring wide;
    for (std::size_t at = 0; at + 1 < bytes.size(); at += sizeof(wchar_t)) {
        wide += static_cast<wchar_t>(bytes[at] | bytes[at + 1] << 8);
    }
    wide.erase(wide.find_last_not_of(L'\0') + 1);
    text = common2::toUtf8(wide);
    return error;
}
