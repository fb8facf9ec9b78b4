#include "host/SystemLog.h"

#include <cstdarg>
#include <cstdio>
#include <string>

// syslog(3) as this program supplies it, in the place of the C library's. Not declared through <syslog.h>,
// whose checked variants are inline functions in some builds.
#define WREN_HOST_EXPORT extern "C" __attribute__((visibility("default")))

WREN_HOST_EXPORT void openlog(const char* ident, int option, int facility);
WREN_HOST_EXPORT void closelog();
WREN_HOST_EXPORT void syslog(int priority, const char* format, ...) __attribute__((format(printf, 2, 3)));
WREN_HOST_EXPORT void vsyslog(int priority, const char* format, std::va_list arguments)
    __attribute__((format(printf, 2, 0)));
// NOLINTNEXTLINE(bugprone-reserved-identifier): the names are the C library's
WREN_HOST_EXPORT void __syslog_chk(int priority, int flag, const char* format, ...)
    __attribute__((format(printf, 3, 4)));
// NOLINTNEXTLINE(bugprone-reserved-identifier)
WREN_HOST_EXPORT void __vsyslog_chk(int priority, int flag, const char* format, std::va_list arguments)
    __attribute__((format(printf, 3, 0)));

namespace host {
namespace {

std::string formatted(const char* format, std::va_list arguments) {
    std::va_list measured;
    va_copy(measured, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, measured);
    va_end(measured);
    if (length < 0) {
        return {};
    }
    std::string text(static_cast<std::size_t>(length), '\0');
    std::vsnprintf(text.data(), text.size() + 1, format, arguments);
    return text;
}

void take(const char* format, std::va_list arguments) { takeLogLine(formatted(format, arguments)); }

} // namespace

// The functions below stand in for the system's from the beginning.
void standInForSystemLog() {}

} // namespace host

void openlog(const char*, int, int) {}

void closelog() {}

void syslog(int, const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    host::take(format, arguments);
    va_end(arguments);
}

void vsyslog(int, const char* format, std::va_list arguments) { host::take(format, arguments); }

void __syslog_chk(int, int, const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    host::take(format, arguments);
    va_end(arguments);
}

void __vsyslog_chk(int, int, const char* format, std::va_list arguments) { host::take(format, arguments); }
