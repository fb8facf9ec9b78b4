#include "common2/logging/LogClock.h"

#include "common2/util/LocalTime.h"

#include <boost/date_time/posix_time/conversion.hpp>

namespace common2 {

LogClock::time_type LogClock::get_clock() {
    constexpr std::int64_t microsecondsPerSecond = 1000000;
    const std::int64_t present = presentMicroseconds();
    followTimeZone(present / microsecondsPerSecond);
    const auto local = localTime(present / microsecondsPerSecond);
    return local ? boost::posix_time::ptime_from_tm(*local) +
                       boost::posix_time::microseconds(present % microsecondsPerSecond)
                 : time_type();
}

} // namespace common2
