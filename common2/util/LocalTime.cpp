#include "common2/util/LocalTime.h"

#include <atomic>
#include <limits>

namespace common2 {

void followTimeZone(std::int64_t second) noexcept {
    static std::atomic<std::int64_t> lastRead{std::numeric_limits<std::int64_t>::min()};
    static std::atomic<bool> isReading{false};
    // While one thread reads the zone, the others go on with the former one.
    if (lastRead.load(std::memory_order_relaxed) != second && !isReading.exchange(true)) {
        lastRead.store(second, std::memory_order_relaxed);
        readTimeZone();
        isReading.store(false);
    }
}

} // namespace common2
