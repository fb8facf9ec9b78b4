#include "host/LogLine.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>

namespace host {

void PrintTo(const LogRecord& record, std::ostream* out) {
    *out << record.severity << " [" << record.function << "] [" << record.file << "] " << record.line << " ["
         << record.message << "]";
}

} // namespace host

namespace {

using host::LogRecord;
using host::parseLogLine;

const std::string head = "2026-01-02 03:04:05.000006 kes_wren_presentation_plugin[0x00007f0a, 0x0001e240] ";

TEST(LogLine, TakesTheLineApart) {
    EXPECT_EQ(parseLogLine(head +
                           "E/ PresentationPluginImpl:42 PresentationPluginImpl::Stop() Unexpected state "
                           "transition"),
              (LogRecord{3, "PresentationPluginImpl::Stop", "PresentationPluginImpl", 42,
                         "Unexpected state transition"}));
}

TEST(LogLine, KnowsEveryMark) {
    const std::pair<const char*, int> marks[] = {{"T", 0}, {"I", 1}, {"W", 2}, {"E", 3}, {"U", 4}, {"", 4}};
    for (const auto& [mark, severity] : marks) {
        EXPECT_EQ(parseLogLine(head + mark + "/ File:1 Function() x"),
                  (LogRecord{severity, "Function", "File", 1, "x"}))
            << mark;
    }
}

TEST(LogLine, FunctionMayEndInParentheses) {
    EXPECT_EQ(parseLogLine(head + "T/ PresentationPluginSm:100 InitUI_a::operator ()() state machine action"),
              (LogRecord{0, "InitUI_a::operator ()", "PresentationPluginSm", 100, "state machine action"}));
}

TEST(LogLine, FileMayHoldFolders) {
    EXPECT_EQ(parseLogLine(head + "T/ state_machine/QuillSmlLogger:18 QuillSmlLogger_t::log_process_event() "
                                  "[struct PresentationPlugin_s][process_event] struct Stop_e"),
              (LogRecord{0, "QuillSmlLogger_t::log_process_event", "state_machine/QuillSmlLogger", 18,
                         "[struct PresentationPlugin_s][process_event] struct Stop_e"}));
}

TEST(LogLine, FileMayHoldColons) {
    EXPECT_EQ(parseLogLine(head + "T/ C:/a:b:7 f() x"), (LogRecord{0, "f", "C:/a:b", 7, "x"}));
}

TEST(LogLine, MessageMayHoldAnything) {
    for (const std::string message :
         {"", " ", "f() g() ", "a\nb\r\n", "] T/ File:1 f() x", "\xFF\xFE", "100% [1, 2]"}) {
        EXPECT_EQ(parseLogLine(head + "I/ File:5 A::b() " + message),
                  (LogRecord{1, "A::b", "File", 5, message}))
            << message;
    }
}

TEST(LogLine, MissingAttributesLeaveTheirPlacesEmpty) {
    EXPECT_EQ(parseLogLine(" [, ] / : () "), (LogRecord{4, "", "", 0, ""}));
    EXPECT_EQ(parseLogLine(" source[, ] W/ :7 () x"), (LogRecord{2, "", "", 7, "x"}));
}

TEST(LogLine, AnotherFormBecomesTheMessage) {
    for (const std::string& text :
         {std::string(), std::string("plain"), head, head + "T/ File", head + "T/ File:1 no parentheses",
          head + "T/ File:x f() y", head + "TT/ File:1 f() x"}) {
        EXPECT_EQ(parseLogLine(text), (LogRecord{4, "", "", 0, text})) << text;
    }
}

} // namespace
