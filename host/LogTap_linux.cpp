#include "host/LogTap.h"

#include <cstdarg>
#include <cstdio>
#include <mutex>
#include <string>
#include <utility>

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

/// Neither is ever destroyed: a module logs until it is unloaded, which may be at the program's very end.
std::mutex& tapMutex() {
    static auto* mutex = new std::mutex;
    return *mutex;
}
std::shared_ptr<LogTap::Handler>& currentHandler() {
    static auto* handler = new std::shared_ptr<LogTap::Handler>;
    return *handler;
}

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

void take(const char* format, std::va_list arguments) {
    std::shared_ptr<LogTap::Handler> handler;
    {
        const std::lock_guard lock(tapMutex());
        handler = currentHandler();
    }
    if (handler) {
        (*handler)(parseLogLine(formatted(format, arguments)));
    }
}

} // namespace

LogTap::LogTap(Handler handler) {
    auto shared = std::make_shared<Handler>(std::move(handler));
    const std::lock_guard lock(tapMutex());
    currentHandler() = std::move(shared);
}

LogTap::~LogTap() {
    std::shared_ptr<Handler> gone;
    const std::lock_guard lock(tapMutex());
    gone = std::exchange(currentHandler(), nullptr);
}

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
