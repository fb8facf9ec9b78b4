#include "tests/support/SystemLogCapture.h"

#include "common2/util/WideText.h"
#include "host/system/Detour_win.h"

#include <mutex>

namespace {

struct Captured {
    std::mutex mutex;
    std::string source;
    std::vector<test::SystemLogLine> lines;
};

Captured& captured() {
    static Captured everything;
    return everything;
}

/// Any address serves as a handle.
HANDLE const eventSource = reinterpret_cast<HANDLE>(&captured);

HANDLE WINAPI registerSource(LPCWSTR server, LPCWSTR source) {
    const std::lock_guard lock(captured().mutex);
    captured().source = server == nullptr ? common2::toUtf8(source) : "not on the local machine";
    return eventSource;
}

BOOL WINAPI deregisterSource(HANDLE) {
    const std::lock_guard lock(captured().mutex);
    captured().source.clear();
    return TRUE;
}

/// Keeps the line with the event's type, or what is wrong with the event.
BOOL WINAPI report(HANDLE handle, WORD type, WORD category, DWORD id, PSID user, WORD count, DWORD bytes,
                   LPCWSTR* strings, LPVOID data) {
    const bool isAsAgreed = handle == eventSource && category == 0 && id == 0x45010001 && user == nullptr &&
                            count == 1 && bytes == 0 && data == nullptr;
    const std::lock_guard lock(captured().mutex);
    captured().lines.push_back({type, isAsAgreed ? common2::toUtf8(strings[0]) : "an event of another form"});
    return TRUE;
}

struct Detours {
    host::Detour registering{L"advapi32.dll", "RegisterEventSourceW",
                             reinterpret_cast<void*>(&registerSource)};
    host::Detour deregistering{L"advapi32.dll", "DeregisterEventSource",
                               reinterpret_cast<void*>(&deregisterSource)};
    host::Detour reporting{L"advapi32.dll", "ReportEventW", reinterpret_cast<void*>(&report)};
};

} // namespace

namespace test::systemLog {

Levels levels() { return {.trace = 4, .info = 4, .warning = 2, .error = 1, .other = 4}; }

void reset() {
    static const Detours detours;
    const std::lock_guard lock(captured().mutex);
    captured().source.clear();
    captured().lines.clear();
}

std::string source() {
    const std::lock_guard lock(captured().mutex);
    return captured().source;
}

std::vector<SystemLogLine> lines() {
    const std::lock_guard lock(captured().mutex);
    return captured().lines;
}

} // namespace test::systemLog
