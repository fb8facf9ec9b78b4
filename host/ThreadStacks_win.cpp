#include "host/ThreadStacks.h"

#include <windows.h>

#include <tlhelp32.h>

#include <cstdio>
#include <io.h>

namespace host {
namespace {

void print(int descriptor, DWORD thread, const char* text) {
    char line[128];
    const int length =
        std::snprintf(line, sizeof line, "thread %lu %s\n", static_cast<unsigned long>(thread), text);
    if (length > 0) {
        ::_write(descriptor, line, static_cast<unsigned>(length));
    }
}

/// Where another thread is: its instruction, since its stack cannot be walked without symbols.
void printPlace(int descriptor, DWORD thread) {
    const HANDLE handle = ::OpenThread(THREAD_SUSPEND_RESUME | THREAD_GET_CONTEXT, FALSE, thread);
    CONTEXT context{};
    context.ContextFlags = CONTEXT_CONTROL;
    if (handle == nullptr || ::SuspendThread(handle) == static_cast<DWORD>(-1)) {
        print(descriptor, thread, "does not answer");
    } else {
        const bool isKnown = ::GetThreadContext(handle, &context) != 0;
        ::ResumeThread(handle);
        char place[32];
        std::snprintf(place, sizeof place, "at 0x%08lx", isKnown ? context.Eip : 0);
        print(descriptor, thread, place);
    }
    if (handle != nullptr) {
        ::CloseHandle(handle);
    }
}

} // namespace

void printThreadStacks(int descriptor) {
    const HANDLE threads = ::CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
    THREADENTRY32 entry{};
    entry.dwSize = sizeof entry;
    for (BOOL isThere = ::Thread32First(threads, &entry); isThere;
         isThere = ::Thread32Next(threads, &entry)) {
        if (entry.th32OwnerProcessID != ::GetCurrentProcessId()) {
            continue;
        }
        if (entry.th32ThreadID == ::GetCurrentThreadId()) {
            print(descriptor, entry.th32ThreadID, "asks");
        } else {
            printPlace(descriptor, entry.th32ThreadID);
        }
    }
    ::CloseHandle(threads);
}

} // namespace host
