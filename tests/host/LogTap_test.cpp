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

using ::testing::ElementsAre;

struct Caught {
    std::vector<std::string> messages;
    host::LogTap tap{[this](const host::LogRecord& record) { messages.push_back(record.message); }};
};

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
    Caught caught;
    ::openlog("test", 0, LOG_USER);
    ::syslog(LOG_INFO, "%s %d", "plain", 1);
    callVsyslog("%s %d", "list", 2);
    ::__syslog_chk(LOG_INFO, 1, "%s %d", "checked", 3);
    callVsyslogChecked("%s %d", "checked list", 4);
    ::closelog();
    EXPECT_THAT(caught.messages, ElementsAre("plain 1", "list 2", "checked 3", "checked list 4"));
}

TEST(LogTap, TakesTheRecordApart) {
    host::LogRecord caught;
    const host::LogTap tap([&](const host::LogRecord& record) { caught = record; });
    ::syslog(LOG_INFO, "%s", "now source[1, 2] W/ File:3 A::operator ()() text");
    EXPECT_EQ(caught, (host::LogRecord{2, "A::operator ()", "File", 3, "text"}));
}

TEST(LogTap, TakesLongTexts) {
    Caught caught;
    const std::string text(100'000, 'x');
    ::syslog(LOG_INFO, "%s", text.c_str());
    EXPECT_THAT(caught.messages, ElementsAre(text));
}

TEST(LogTap, AfterItsEndTheLogGoesNowhere) {
    std::vector<std::string> messages;
    {
        const host::LogTap tap([&](const host::LogRecord& record) { messages.push_back(record.message); });
        ::syslog(LOG_INFO, "caught");
    }
    ::syslog(LOG_INFO, "lost");
    EXPECT_THAT(messages, ElementsAre("caught"));
}

} // namespace
