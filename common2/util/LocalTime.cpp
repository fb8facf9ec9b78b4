#include "common2/util/LocalTime.h"

#include <atomic>
#include <limits>

namespace common2 {

void followTimeZone(std::int64_t second) noexcept {
    static std::atomic<std::int64_t> lastLook{std::numeric_limits<std::int64_t>::min()};
    if (lastLook.load(std::memory_order_relaxed) != second) {
        lastLook.store(second, std::memory_order_relaxed);
        readTimeZone();
    }
}

} // namespace common2
