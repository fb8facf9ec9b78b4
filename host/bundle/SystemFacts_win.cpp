#include "host/bundle/SystemFacts.h"

#include <windows.h>

#include <string>
#include <string_view>

namespace host::bundle {
namespace {

std::string utf8(std::wstring_view text) {
    const int size = static_cast<int>(text.size());
    std::string bytes(text.size() * 3, '\0');
    const int length = ::WideCharToMultiByte(CP_UTF8, 0, text.data(), size, bytes.data(),
                                             static_cast<int>(bytes.size()), nullptr, nullptr);
    bytes.resize(static_cast<std::size_t>(length));
    return bytes;
}

/// By names in capitals, as the system does not tell them apart from others.
std::map<std::string, std::string> environment() {
    std::map<std::string, std::string> variables;
    wchar_t* const block = ::GetEnvironmentStringsW();
    for (const wchar_t* entry = block; entry != nullptr && *entry != L'\0';) {
        const std::wstring_view text = entry;
        const std::size_t equals = text.find(L'=', 1); // some names of the system's own begin with one
        if (equals != std::wstring_view::npos) {
            std::wstring name(text.substr(0, equals));
            ::CharUpperBuffW(name.data(), static_cast<DWORD>(name.size()));
            variables.emplace(utf8(name), utf8(text.substr(equals + 1)));
        }
        entry += text.size() + 1;
    }
    if (block != nullptr) {
        ::FreeEnvironmentStringsW(block);
    }
    return variables;
}

/// The version as the kernel has it: the usual call tells programs what they expect.
std::string systemName() {
    using Teller = LONG(WINAPI*)(OSVERSIONINFOW*);
    const auto tell = reinterpret_cast<Teller>(
        reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleW(L"ntdll.dll"), "RtlGetVersion")));
    OSVERSIONINFOW version{};
    version.dwOSVersionInfoSize = sizeof version;
    if (tell == nullptr || tell(&version) != 0) {
        return "Windows";
    }
    std::string name = "Windows ";
    name.append(std::to_string(version.dwMajorVersion))
        .append(".")
        .append(std::to_string(version.dwMinorVersion));
    return name.append(".").append(std::to_string(version.dwBuildNumber));
}

} // namespace

SystemFacts systemFacts() {
    SystemFacts facts;
    facts.environment = environment();
    facts.system = systemName();
    facts.userNames.push_back(facts.environment["USERNAME"]);
    facts.homeFolders.push_back(facts.environment["USERPROFILE"]);
    facts.hostName = facts.environment["COMPUTERNAME"];
    return facts;
}

} // namespace host::bundle
