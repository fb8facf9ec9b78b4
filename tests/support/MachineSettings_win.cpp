#include "tests/support/MachineSettings.h"

#include <windows.h>

#include <algorithm>
#include <stdexcept>

namespace test {
namespace {

void removeAll() {
    for (const wchar_t* maker : {L"Software\\Maker", L"Software\\Norvane", L"Software\\Sandpiper"}) {
        ::RegDeleteTreeW(HKEY_LOCAL_MACHINE, maker);
        ::RegDeleteKeyW(HKEY_LOCAL_MACHINE, maker);
    }
}

std::wstring toWide(std::string_view text) {
    std::wstring wide(text.size(), L'\0');
    const int count = ::MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(text.size()),
                                            wide.data(), static_cast<int>(wide.size()));
    wide.resize(static_cast<std::size_t>(count));
    return wide;
}

void set(const std::string& key, const std::string& value, DWORD type, const void* data, std::size_t size) {
    std::wstring path = toWide("Software/" + key);
    std::ranges::replace(path, L'/', L'\\');
    HKEY opened = nullptr;
    LSTATUS status = ::RegCreateKeyExW(HKEY_LOCAL_MACHINE, path.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr,
                                       &opened, nullptr);
    if (status == ERROR_SUCCESS) {
        status = ::RegSetValueExW(opened, toWide(value).c_str(), 0, type, static_cast<const BYTE*>(data),
                                  static_cast<DWORD>(size));
        ::RegCloseKey(opened);
    }
    if (status != ERROR_SUCCESS) {
        throw std::runtime_error("cannot set " + key + "/" + value);
    }
}

} // namespace

struct MachineSettings::Place {};

MachineSettings::MachineSettings() { removeAll(); }
MachineSettings::~MachineSettings() { removeAll(); }

void MachineSettings::setBytes(const std::string& key, const std::string& value,
                               std::string_view bytes) const {
    set(key, value, REG_BINARY, bytes.data(), bytes.size());
}

void MachineSettings::setText(const std::string& key, const std::string& value, std::string_view text) const {
    const std::wstring wide = toWide(text);
    set(key, value, REG_SZ, wide.c_str(), (wide.size() + 1) * sizeof(wchar_t));
}

} // namespace test
