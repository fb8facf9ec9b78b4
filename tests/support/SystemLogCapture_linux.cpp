#include "tests/support/SystemLogCapture.h"

#include <cstdarg>
#include <cstdio>
#include <mutex>

namespace {

struct Captured {
    std::mutex mutex;
    std::string ident;
    std::vector<test::SystemLogLine> lines;
};

Captured& captured() {
    static Captured everything;
    return everything;
}

void keep(int priority, const char* format, std::va_list arguments) {
    std::va_list measured;
    va_copy(measured, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, measured);
    va_end(measured);
    std::string text(static_cast<std::size_t>(length) + 1, '\0');
    std::vsnprintf(text.data(), text.size(), format, arguments);
    text.pop_back();
    const std::lock_guard lock(captured().mutex);
    captured().lines.push_back({priority, text});
}

} // namespace

// Declared here, not by <syslog.h>, which may replace them by inline functions of its own.
extern "C" {
[[gnu::visibility("default"), gnu::format(printf, 2, 3)]] void syslog(int priority, const char* format, ...);
[[gnu::visibility("default"), gnu::format(printf, 3, 4)]] void __syslog_chk(int priority, int flag,
                                                                            const char* format, ...);
[[gnu::visibility("default")]] void openlog(const char* ident, int option, int facility);
[[gnu::visibility("default")]] void closelog();

void syslog(int priority, const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    keep(priority, format, arguments);
    va_end(arguments);
}

void __syslog_chk(int priority, int, const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    keep(priority, format, arguments);
    va_end(arguments);
}

void openlog(const char* ident, int, int) {
    const std::lock_guard lock(captured().mutex);
    captured().ident = ident;
}

void closelog() {
    const std::lock_guard lock(captured().mutex);
    captured().ident.clear();
}
}

namespace test::systemLog {

// The numbers of <syslog.h>, which must not declare its functions here.
Levels levels() { return {.trace = 7, .info = 6, .warning = 4, .error = 3, .other = 6}; }

void reset() {
    const std::lock_guard lock(captured().mutex);
    captured().ident.clear();
    captured().lines.clear();
}

std::string source() {
    const std::lock_guard lock(captured().mutex);
    return captured().ident;
}

std::vector<SystemLogLine> lines() {
    const std::lock_guard lock(captured().mutex);
    return captured().lines;
}

} // namespace test::systemLog
