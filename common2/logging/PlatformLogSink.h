/// Where log lines go on this platform: syslog on Linux, the event log on Windows.
#pragma once

#include <boost/log/sinks/sink.hpp>
#include <boost/smart_ptr/shared_ptr.hpp>

#include <string>

namespace common2 {

/// A sink that takes each record as its formatted line (`formatLogLine`) with a priority that follows from
/// its severity. Registers the source with the platform while it exists; a registration that fails leaves a
/// sink that writes nothing. Not yet added to the log core.
/// @param sourceName name under which the platform's log shows the lines
boost::shared_ptr<boost::log::sinks::sink> makePlatformLogSink(const std::string& sourceName);

} // namespace common2
