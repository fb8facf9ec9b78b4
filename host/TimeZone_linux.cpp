#include "host/TimeZone.h"

#include <cstdlib>
#include <ctime>

namespace host {

void setTimeZone(const std::string& zone) {
    ::setenv("TZ", zone.c_str(), 1);
    ::tzset();
}

} // namespace host
