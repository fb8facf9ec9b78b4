#include "tests/support/MachineSettings.h"

#include <windows.h>

#include <algorithm>
#include <stdexcept>
#include <vector>

namespace test {
namespace {

/// The access flags that lead to the sets of settings.
std::vector<REGSAM> flagsOf(SettingsView view) {
    switch (view) {
    case SettingsView::Own:
        return {KEY_WOW64_64KEY};
    case SettingsView::For32Bits:
        return {KEY_WOW64_32KEY};
    default:
        return {KEY_WOW64_64KEY, KEY_WOW64_32KEY};
    }
}

void removeAll() {
    for (const REGSAM view : flagsOf(SettingsView::Both)) {
        HKEY software = nullptr;
        if (::RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"Software", 0, KEY_ALL_ACCESS | view, &software) !=
            ERROR_SUCCESS) {
            continue;
        }
        for (const wchar_t* maker : {L"Maker", L"Norvane", L"Sandpiper"}) {
            ::RegDeleteTreeW(software, maker);
            ::RegDeleteKeyExW(software, maker, view, 0);
        }
        ::RegCloseKey(software);
    }
}

std::wstring toWide(std::string_view text) {
    std::wstring wide(text.size(), L'\0');
    const int count = ::MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(text.size()),
                                            wide.data(), static_cast<int>(wide.size()));
    wide.resize(static_cast<std::size_t>(count));
    return wide;
}

/// A value's type and bytes.
struct Data {
    DWORD type;
    const void* bytes;
    std::size_t size;
};

void set(REGSAM view, const std::string& key, const std::string& value, const Data& data) {
    std::wstring path = toWide("Software/" + key);
    std::ranges::replace(path, L'/', L'\\');
    HKEY opened = nullptr;
    LSTATUS status = ::RegCreateKeyExW(HKEY_LOCAL_MACHINE, path.c_str(), 0, nullptr, 0, KEY_WRITE | view,
                                       nullptr, &opened, nullptr);
    if (status == ERROR_SUCCESS) {
        status = ::RegSetValueExW(opened, toWide(value).c_str(), 0, data.type,
                                  static_cast<const BYTE*>(data.bytes), static_cast<DWORD>(data.size));
        ::RegCloseKey(opened);
    }
    if (status != ERROR_SUCCESS) {
        throw std::runtime_error("cannot set " + key + "/" + value);
    }
}

} // namespace

struct MachineSettings::Place {
    std::vector<REGSAM> views;

    void set(const std::string& key, const std::string& value, const Data& data) const {
        for (const REGSAM view : views) {
            test::set(view, key, value, data);
        }
    }
};

MachineSettings::MachineSettings(SettingsView view)
    : place(std::make_unique<Place>(Place{flagsOf(view)})) {
    removeAll();
}
MachineSettings::~MachineSettings() { removeAll(); }

void MachineSettings::setBytes(const std::string& key, const std::string& value,
                               std::string_view bytes) const {
    place->set(key, value, {REG_BINARY, bytes.data(), bytes.size()});
}

void MachineSettings::setText(const std::string& key, const std::string& value, std::string_view text) const {
    const std::wstring wide = toWide(text);
    place->set(key, value, {REG_SZ, wide.c_str(), (wide.size() + 1) * sizeof(wchar_t)});
}

} // namespace test
