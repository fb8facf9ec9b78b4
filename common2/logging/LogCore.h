/// The log core as its owner sees it: installing a filter, and the names and shapes of a record's attributes.
/// Files that only log include Common2Loggers.h.
#pragma once

#include "common2/logging/Common2Loggers.h"

#include <boost/log/core/record_view.hpp>
#include <boost/log/expressions/filter.hpp>

#include <string>

namespace common2 {

/// Attribute names of a record.
namespace logAttribute {
inline constexpr const char* timeStamp = "TimeStamp"; ///< boost::posix_time::ptime, local time
inline constexpr const char* processId = "ProcessID"; ///< process id of the log library
inline constexpr const char* threadId = "ThreadID";   ///< thread id of the log library
inline constexpr const char* source = "Source";       ///< std::string, the process's log source name
inline constexpr const char* severity = "Severity";   ///< Common2LogSeverity
inline constexpr const char* channel = "Channel";     ///< std::string, optional
inline constexpr const char* file = "File";           ///< std::string
inline constexpr const char* line = "Line";           ///< int
inline constexpr const char* function = "Function";   ///< std::string
inline constexpr const char* message = "Message";     ///< std::string
} // namespace logAttribute

/// Makes `filter` the core's filter, in one atomic step.
/// @param lowest no record below this severity passes `filter`, so statements below it need not ask
void installLogFilter(const boost::log::filter& filter, Common2LogSeverity lowest);

/// Takes the filter away again: every record passes.
void removeLogFilter();

/// The letter that stands for a severity in a log line: T, I, W, E, and U for any other value.
char severityMark(int severity) noexcept;

/// A record as one line: "TimeStamp Source[ThreadID, ProcessID] S/ File:Line Function() Message". An
/// attribute that the record lacks leaves its place empty.
std::string formatLogLine(const boost::log::record_view& record);

} // namespace common2
