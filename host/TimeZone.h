/// The process's time zone.
#pragma once

#include <string>

namespace host {

/// Makes local time that of the zone, named as the TZ environment variable takes it. No other thread may run
/// yet.
void setTimeZone(const std::string& zone);

/// The name of the zone that local time is of; empty where the system does not tell.
std::string timeZone();

} // namespace host
