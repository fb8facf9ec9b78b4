#include "host/LogTap.h"

#include "host/Detour_win.h"

#include <mutex>
#include <string>
#include <utility>

namespace host {
namespace {

/// Neither is ever destroyed: a module logs until it is unloaded, which may be at the program's very end.
std::mutex& tapMutex() {
    static auto* mutex = new std::mutex;
    return *mutex;
}
std::shared_ptr<LogTap::Handler>& currentHandler() {
    static auto* handler = new std::shared_ptr<LogTap::Handler>;
    return *handler;
}

std::string toUtf8(const wchar_t* wide) {
    const int size = ::WideCharToMultiByte(CP_UTF8, 0, wide, -1, nullptr, 0, nullptr, nullptr);
    std::string text(static_cast<std::size_t>(size), '\0');
    ::WideCharToMultiByte(CP_UTF8, 0, wide, -1, text.data(), size, nullptr, nullptr);
    text.pop_back(); // the NUL
    return text;
}

/// ReportEventW as this process has it while a tap exists.
BOOL WINAPI takeReport(HANDLE, WORD, WORD, DWORD, PSID, WORD count, DWORD, LPCWSTR* strings, LPVOID) {
    std::shared_ptr<LogTap::Handler> handler;
    {
        const std::lock_guard lock(tapMutex());
        handler = currentHandler();
    }
    if (handler && count == 1) {
        (*handler)(parseLogLine(toUtf8(strings[0])));
    }
    return TRUE;
}

/// Stays until the process ends: a module may log at any time.
void takeReports() {
    static const auto* detour =
        new Detour(L"advapi32.dll", "ReportEventW", reinterpret_cast<void*>(&takeReport));
    static_cast<void>(detour);
}

} // namespace

LogTap::LogTap(Handler handler) {
    auto shared = std::make_shared<Handler>(std::move(handler));
    const std::lock_guard lock(tapMutex());
    takeReports();
    currentHandler() = std::move(shared);
}

LogTap::~LogTap() {
    std::shared_ptr<Handler> gone;
    const std::lock_guard lock(tapMutex());
    gone = std::exchange(currentHandler(), nullptr);
}

} // namespace host
