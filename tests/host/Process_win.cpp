#include "tests/host/Process.h"

#include <windows.h>

#include <mutex>
#include <stdexcept>
#include <string_view>
#include <thread>

namespace test {
namespace {

constexpr DWORD firstCrashCode = 0x80000000; // what an exception that nothing handles ends a process with
constexpr UINT killedCode = 1;

/// A handle that is closed at its end.
class Handle {
public:
    explicit Handle(HANDLE opened = nullptr)
        : handle(opened) {}
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;
    ~Handle() { close(); }

    HANDLE get() const { return handle; }
    HANDLE* place() { return &handle; }
    void close() {
        if (handle != nullptr) {
            ::CloseHandle(handle);
        }
        handle = nullptr;
    }

private:
    HANDLE handle;
};

/// In the form that the child's C library turns back into the same bytes.
std::wstring wide(const std::string& text) {
    std::wstring converted(text.size(), L'\0');
    const int length = ::MultiByteToWideChar(CP_ACP, 0, text.data(), static_cast<int>(text.size()),
                                             converted.data(), static_cast<int>(converted.size()));
    converted.resize(static_cast<std::size_t>(length));
    return converted;
}

/// An argument as the C library of the child takes it apart again.
std::wstring quoted(const std::wstring& argument) {
    std::wstring text = L"\"";
    std::size_t slashes = 0;
    for (const wchar_t character : argument) {
        if (character == L'"') {
            text.append(slashes + 1, L'\\');
        }
        slashes = character == L'\\' ? slashes + 1 : 0;
        text += character;
    }
    text.append(slashes, L'\\');
    return text += L'"';
}

void makePipe(Handle& ours, Handle& childs) {
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    if (!::CreatePipe(ours.place(), childs.place(), &inherited, 0) ||
        !::SetHandleInformation(ours.get(), HANDLE_FLAG_INHERIT, 0)) {
        throw std::runtime_error("cannot make a pipe");
    }
}

bool readSome(HANDLE pipe, std::string& text) {
    char part[4096];
    DWORD count = 0;
    if (!::ReadFile(pipe, part, sizeof part, &count, nullptr)) {
        return false;
    }
    for (const char character : std::string_view(part, count)) {
        if (character != '\r') {
            text += character;
        }
    }
    return true;
}

void readAll(HANDLE pipe, std::string& text) {
    while (readSome(pipe, text)) {
    }
}

BOOL WINAPI ignoreInterruption(DWORD) { return TRUE; }

} // namespace

struct Process::State {
    Handle process;
    DWORD number = 0;
    Handle out;
    Handle error;
    std::string caught;

    void start(const ProcessPlan& plan, HANDLE childsOut, HANDLE childsError, HANDLE nothing);
};

/// The child has a console of its own, which nothing shows: there it can be interrupted alone.
void Process::State::start(const ProcessPlan& plan, HANDLE childsOut, HANDLE childsError, HANDLE nothing) {
    std::wstring commandLine = quoted(plan.program.wstring());
    for (const std::string& argument : plan.arguments) {
        commandLine.append(L" ").append(quoted(wide(argument)));
    }
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = nothing;
    startup.hStdOutput = childsOut;
    startup.hStdError = childsError;
    PROCESS_INFORMATION started{};
    // A crash is to end the child at once, without a dialog that a person has to close: it inherits that.
    ::SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX | SEM_NOOPENFILEERRORBOX);
    const std::wstring folder = plan.folder.wstring();
    if (!::CreateProcessW(plan.program.c_str(), commandLine.data(), nullptr, nullptr, TRUE, CREATE_NO_WINDOW,
                          nullptr, folder.empty() ? nullptr : folder.c_str(), &startup, &started)) {
        throw std::runtime_error("cannot start " + plan.program.string());
    }
    ::CloseHandle(started.hThread);
    *process.place() = started.hProcess;
    number = started.dwProcessId;
}

Process::Process(const ProcessPlan& plan)
    : state(std::make_unique<State>()) {
    // No other child may be started while the pipes' ends can be inherited: it would keep them open.
    static std::mutex oneAtATime;
    const std::lock_guard lock(oneAtATime);
    Handle childsOut;
    Handle childsError;
    makePipe(state->out, childsOut);
    makePipe(state->error, childsError);
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    const Handle nothing(::CreateFileW(L"NUL", GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited,
                                       OPEN_EXISTING, 0, nullptr));
    state->start(plan, childsOut.get(), plan.joinsErrors ? childsOut.get() : childsError.get(),
                 nothing.get());
}

Process::~Process() {
    if (state->process.get() != nullptr) {
        ::TerminateProcess(state->process.get(), killedCode);
        ::WaitForSingleObject(state->process.get(), INFINITE);
    }
}

const std::string& Process::waitForOutput(const std::string& text) {
    while (state->caught.find(text) == std::string::npos && readSome(state->out.get(), state->caught)) {
    }
    return state->caught;
}

/// Goes to the child's console for as long as that takes.
void Process::interrupt() const {
    ::FreeConsole();
    if (!::AttachConsole(state->number)) {
        throw std::runtime_error("the program has no console: error " + std::to_string(::GetLastError()));
    }
    // This process is told, too, at any later time. A function stays with it; the flag would go to later
    // children.
    ::SetConsoleCtrlHandler(ignoreInterruption, TRUE);
    ::GenerateConsoleCtrlEvent(CTRL_C_EVENT, 0);
    ::FreeConsole();
    ::AttachConsole(ATTACH_PARENT_PROCESS);
}

/// The system has no other way for a program without a window.
void Process::terminate() const { interrupt(); }

ProcessEnd Process::finish() {
    ProcessEnd end;
    std::thread reader([&] { readAll(state->error.get(), end.error); });
    readAll(state->out.get(), state->caught);
    reader.join();
    ::WaitForSingleObject(state->process.get(), INFINITE);
    DWORD code = 0;
    ::GetExitCodeProcess(state->process.get(), &code);
    state->process.close();
    end.exitCode = code < firstCrashCode ? static_cast<int>(code) : -1;
    end.out = state->caught;
    return end;
}

} // namespace test
