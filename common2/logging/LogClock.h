/// The clock of log records.
#pragma once

#include <boost/date_time/posix_time/posix_time_types.hpp>

namespace common2 {

/// What the log library's `basic_clock` asks for the time. The library's own clock counts in `std::time_t`,
/// which ends in January 2038 on 32-bit Windows: no record could be made from then on.
struct LogClock {
    using time_type = boost::posix_time::ptime;

    /// The present local time to the microsecond, or no time if it has no calendar date. Any thread.
    static time_type get_clock();
};

} // namespace common2
