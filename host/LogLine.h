/// The module's log lines, taken apart.
#pragma once

#include <string>
#include <string_view>

namespace host {

/// One log record of the module.
struct LogRecord {
    int severity = 0; ///< 0 trace, 1 info, 2 warning, 3 error, `unknownSeverity` for any other mark
    std::string function;
    std::string file;
    int line = 0; ///< 0 where the line holds none
    std::string message;

    bool operator==(const LogRecord&) const = default;
};

inline constexpr int unknownSeverity = 4;

/// The record in a line of the form
///
///     TimeStamp Source[ThreadID, ProcessID] S/ File:Line Function() Message
///
/// The function's name may itself end in "()", the message may hold anything. A text of another form becomes
/// the message of a record of unknown severity, so that nothing is lost.
LogRecord parseLogLine(std::string_view text);

} // namespace host
