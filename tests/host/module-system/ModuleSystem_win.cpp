#include "tests/host/module-system/ModuleSystem.h"

#include <windows.h>

namespace test::module_system {
namespace {

std::wstring toWide(const std::string& text) {
    std::wstring wide(text.size(), L'\0');
    const int length = ::MultiByteToWideChar(CP_UTF8, 0, text.data(), static_cast<int>(text.size()),
                                             wide.data(), static_cast<int>(wide.size()));
    wide.resize(static_cast<std::size_t>(length));
    return wide;
}

} // namespace

void log(const std::string& line) {
    const std::wstring wide = toWide(line);
    LPCWSTR text = wide.c_str();
    static const HANDLE source = ::RegisterEventSourceW(nullptr, L"a module of the tests");
    ::ReportEventW(source, EVENTLOG_INFORMATION_TYPE, 0, 0x45010001, nullptr, 1, 0, &text, nullptr);
}

void crash() {
    for (;;) {
        ::RaiseException(static_cast<DWORD>(EXCEPTION_ACCESS_VIOLATION), EXCEPTION_NONCONTINUABLE, 0,
                         nullptr);
    }
}

void leave(int exitCode) {
    for (;;) {
        ::TerminateProcess(::GetCurrentProcess(), static_cast<UINT>(exitCode));
    }
}

void hang() {
    for (;;) {
        ::Sleep(INFINITE);
    }
}

OtherModule::OtherModule(const char* file)
    : handle(::LoadLibraryW(toWide(file).c_str())) {
    if (handle == nullptr) {
        crash();
    }
}

OtherModule::~OtherModule() { ::FreeLibrary(static_cast<HMODULE>(handle)); }

void* OtherModule::symbol(const char* name) const {
    return reinterpret_cast<void*>(::GetProcAddress(static_cast<HMODULE>(handle), name));
}

} // namespace test::module_system
