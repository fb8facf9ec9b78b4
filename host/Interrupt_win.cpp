#include "host/Interrupt.h"

#include <windows.h>

#include <atomic>

namespace host {
namespace {

/// Set by an interruption. The system calls back without a context of ours, on a thread of its own.
std::atomic<HANDLE> interrupted = nullptr;

BOOL WINAPI onInterrupt(DWORD) {
    const HANDLE event = interrupted;
    return event != nullptr && ::SetEvent(event);
}

} // namespace

struct Interrupt::State {
    HANDLE event = ::CreateEventW(nullptr, TRUE, FALSE, nullptr);

    State() = default;
    State(const State&) = delete;
    State& operator=(const State&) = delete;
    ~State() { ::CloseHandle(event); }
};

Interrupt::Interrupt()
    : state(std::make_unique<State>()) {
    interrupted = state->event;
    ::SetConsoleCtrlHandler(onInterrupt, TRUE);
}

Interrupt::~Interrupt() {
    ::SetConsoleCtrlHandler(onInterrupt, FALSE);
    interrupted = nullptr;
}

void Interrupt::wait() {
    ::WaitForSingleObject(state->event, INFINITE);
    ::SetConsoleCtrlHandler(onInterrupt, FALSE); // the next interruption ends the program as usual
}

bool Interrupt::waitForInput() {
    const HANDLE input = ::GetStdHandle(STD_INPUT_HANDLE);
    if (::GetFileType(input) != FILE_TYPE_CHAR) {
        // A file or a pipe cannot be waited for: reading it waits.
        return ::WaitForSingleObject(state->event, 0) != WAIT_OBJECT_0;
    }
    const HANDLE waited[] = {state->event, input};
    return ::WaitForMultipleObjects(2, waited, FALSE, INFINITE) != WAIT_OBJECT_0;
}

} // namespace host
