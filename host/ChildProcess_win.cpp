#include "host/ChildProcess.h"

#include "host/HostError.h"
#include "host/ProgramPath.h"

#include <windows.h>

#include <array>
#include <cstdio>
#include <mutex>
#include <thread>
#include <utility>

namespace host {
namespace {

constexpr DWORD firstCrashCode = 0x80000000; // what an exception that nobody handles ends a process with
constexpr UINT killedCode = 1;

[[noreturn]] void cannot(const char* what) {
    throw HostError(
        std::string("cannot ").append(what).append(": error ").append(std::to_string(::GetLastError())));
}

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
        if (handle != nullptr && handle != INVALID_HANDLE_VALUE) {
            ::CloseHandle(handle);
        }
        handle = nullptr;
    }

private:
    HANDLE handle;
};

std::wstring wide(const std::string& text) {
    const int length = ::MultiByteToWideChar(CP_ACP, 0, text.c_str(), -1, nullptr, 0);
    std::wstring converted(static_cast<std::size_t>(length > 0 ? length : 1), L'\0');
    ::MultiByteToWideChar(CP_ACP, 0, text.c_str(), -1, converted.data(), length);
    converted.pop_back();
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

/// Starts the child with the end of a pipe that only it holds.
/// @return the process
HANDLE spawn(std::wstring commandLine, const std::wstring& program, Handle& output) {
    // No other child may be started while the pipe's end can be inherited: it would keep it open.
    static std::mutex oneAtATime;
    const std::lock_guard lock(oneAtATime);
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    Handle childsOutput;
    if (!::CreatePipe(output.place(), childsOutput.place(), &inherited, 0) ||
        !::SetHandleInformation(output.get(), HANDLE_FLAG_INHERIT, 0)) {
        cannot("make a pipe");
    }
    const Handle nothing(::CreateFileW(L"NUL", GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited,
                                       OPEN_EXISTING, 0, nullptr));
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = nothing.get();
    startup.hStdOutput = childsOutput.get();
    startup.hStdError = ::GetStdHandle(STD_ERROR_HANDLE);
    PROCESS_INFORMATION process{};
    // A crash is to end the child at once, without a dialog that somebody has to close: it inherits that.
    ::SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX | SEM_NOOPENFILEERRORBOX);
    if (!::CreateProcessW(program.c_str(), commandLine.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr,
                          &startup, &process)) {
        cannot("start a process");
    }
    ::CloseHandle(process.hThread);
    return process.hProcess;
}

void readAll(HANDLE pipe, std::string& text) {
    std::array<char, 4096> part;
    DWORD count = 0;
    while (::ReadFile(pipe, part.data(), static_cast<DWORD>(part.size()), &count, nullptr) && count > 0) {
        text.append(part.data(), count);
        if (text.size() > 2 * keptOutput) {
            text.erase(0, text.size() - keptOutput);
        }
    }
}

std::string hexadecimal(DWORD code) {
    std::array<char, 16> text{};
    std::snprintf(text.data(), text.size(), "0x%08lX", static_cast<unsigned long>(code));
    return text.data();
}

} // namespace

ChildEnd runChild(const std::vector<std::string>& arguments, std::chrono::milliseconds limit) {
    const std::wstring program = programPath().wstring();
    std::wstring commandLine = quoted(program);
    for (const std::string& argument : arguments) {
        commandLine.append(L" ").append(quoted(wide(argument)));
    }
    Handle output;
    const Handle process(spawn(std::move(commandLine), program, output));
    ChildEnd end;
    std::thread reader([&] { readAll(output.get(), end.output); });
    end.isOverdue = ::WaitForSingleObject(process.get(), static_cast<DWORD>(limit.count())) != WAIT_OBJECT_0;
    if (end.isOverdue) {
        ::TerminateProcess(process.get(), killedCode);
        ::WaitForSingleObject(process.get(), INFINITE);
    }
    reader.join();
    DWORD code = 0;
    ::GetExitCodeProcess(process.get(), &code);
    end.exitCode = static_cast<int>(code);
    if (!end.isOverdue && code >= firstCrashCode) {
        end.crash = std::string("code ").append(hexadecimal(code));
    }
    return end;
}

} // namespace host
