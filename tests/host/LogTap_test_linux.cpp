#include "host/LogTap.h"

#include <gmock/gmock.h>

#include <syslog.h>

#include <cstdarg>
#include <string>
#include <vector>

extern "C" {
void __syslog_chk(int priority, int flag, const char* format, ...) __attribute__((format(printf, 3, 4)));
void __vsyslog_chk(int priority, int flag, const char* format, std::va_list arguments)
    __attribute__((format(printf, 3, 0)));
}

namespace {

void callVsyslog(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    ::vsyslog(LOG_INFO, format, arguments);
    va_end(arguments);
}

void callVsyslogChecked(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    ::__vsyslog_chk(LOG_INFO, 1, format, arguments);
    va_end(arguments);
}

TEST(LogTap, CatchesEveryWayIntoTheLog) {
    std::vector<std::string> messages;
    const host::LogTap tap([&](const host::LogRecord& record) { messages.push_back(record.message); });
    ::openlog("test", 0, LOG_USER);
    ::syslog(LOG_INFO, "%s %d", "plain", 1);
    callVsyslog("%s %d", "list", 2);
    ::__syslog_chk(LOG_INFO, 1, "%s %d", "checked", 3);
    callVsyslogChecked("%s %d", "checked list", 4);
    ::closelog();
    EXPECT_THAT(messages, ::testing::ElementsAre("plain 1", "list 2", "checked 3", "checked list 4"));
}

} // namespace
