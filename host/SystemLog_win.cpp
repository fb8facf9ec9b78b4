#include "host/SystemLog.h"

#include "host/system/Detour_win.h"

#include <string>

namespace host {
namespace {

std::string toUtf8(const wchar_t* wide) {
    const int size = ::WideCharToMultiByte(CP_UTF8, 0, wide, -1, nullptr, 0, nullptr, nullptr);
    std::string text(static_cast<std::size_t>(size), '\0');
    ::WideCharToMultiByte(CP_UTF8, 0, wide, -1, text.data(), size, nullptr, nullptr);
    text.pop_back(); // the NUL
    return text;
}

/// ReportEventW as this process has it.
BOOL WINAPI takeReport(HANDLE, WORD, WORD, DWORD, PSID, WORD count, DWORD, LPCWSTR* strings, LPVOID) {
    if (count == 1) {
        takeLogLine(toUtf8(strings[0]));
    }
    return TRUE;
}

} // namespace

void standInForSystemLog() {
    static const auto* detour =
        new Detour(L"advapi32.dll", "ReportEventW", reinterpret_cast<void*>(&takeReport));
    static_cast<void>(detour);
}

} // namespace host
