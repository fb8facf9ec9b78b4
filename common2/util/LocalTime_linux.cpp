#include "common2/util/LocalTime.h"

#include <chrono>

namespace common2 {

static_assert(sizeof(std::time_t) == sizeof(std::int64_t));

std::int64_t presentSeconds() noexcept { return std::time(nullptr); }

std::int64_t presentMicroseconds() noexcept {
    const auto present = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::microseconds>(present).count();
}

void readTimeZone() noexcept { ::tzset(); }

std::optional<std::tm> localTime(std::int64_t seconds) noexcept {
    const std::time_t time = seconds;
    std::tm local{};
    return ::localtime_r(&time, &local) ? std::optional(local) : std::nullopt;
}

} // namespace common2
