/// The system's log as this process has it: what modules write there comes to the host instead.
#pragma once

#include <string>

namespace host {

/// From now on, and until the process ends, the system's log is the host's: a module may log at any time.
/// @throws HostError where the system doesn't allow it
void standInForSystemLog();

/// Called with each line that anybody in this process hands to the system's log, on the thread that logs.
void takeLogLine(const std::string& line);

} // namespace host
