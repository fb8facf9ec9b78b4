#include "host/TimeZone.h"

#include <cstdlib>
#include <ctime>

namespace host {

void setTimeZone(const std::string& zone) {
    ::_putenv_s("TZ", zone.c_str());
    ::_tzset();
}

std::string timeZone() {
    const char* zone = std::getenv("TZ");
    return zone != nullptr ? zone : "";
}

} // namespace host
