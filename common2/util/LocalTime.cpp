#include "common2/util/LocalTime.h"

#include <atomic>
#include <limits>

namespace common2 {

void followTimeZone(std::int64_t second) noexcept {
    static std::atomic<std::int64_t> lastLook{std::numeric_limits<std::int64_t>::min()};
    static std::atomic<bool> isLooking{false};
    // Nobody waits for a thread that is at it already.
    if (lastLook.load(std::memory_order_relaxed) != second && !isLooking.exchange(true)) {
        lastLook.store(second, std::memory_order_relaxed);
        readTimeZone();
        isLooking.store(false);
    }
}

} // namespace common2
