#include "common2/util/LocalTime.h"

#include <windows.h>

#include <limits>

namespace common2 {
namespace {

/// The last second of the last whole year that the C library knows, 2999.
constexpr std::int64_t lastKnownSecond = 32503679999;

/// The calendar repeats itself, the days of the week included, after 400 years.
constexpr int cycleYears = 400;
constexpr std::int64_t cycleSeconds = 146097LL * 24 * 60 * 60;
constexpr std::int64_t mostCycles = (std::numeric_limits<int>::max() - 3000) / cycleYears;

} // namespace

std::int64_t presentSeconds() noexcept { return presentMicroseconds() / 1000000; }

std::int64_t presentMicroseconds() noexcept {
    constexpr std::int64_t ticksPerMicrosecond = 10;
    constexpr std::int64_t ticksFrom1601To1970 = 116444736000000000;
    FILETIME time{};
    ::GetSystemTimeAsFileTime(&time);
    const std::int64_t ticks = static_cast<std::int64_t>(time.dwHighDateTime) << 32 | time.dwLowDateTime;
    return (ticks - ticksFrom1601To1970) / ticksPerMicrosecond;
}

void readTimeZone() noexcept { ::_tzset(); }

std::optional<std::tm> localTime(std::int64_t seconds) noexcept {
    if (seconds < 0) {
        return std::nullopt; // at which the C library may end the process, as at a year that it does not know
    }
    const std::int64_t cycles =
        seconds > lastKnownSecond ? (seconds - lastKnownSecond - 1) / cycleSeconds + 1 : 0;
    const std::int64_t known = seconds - cycles * cycleSeconds;
    std::tm local{};
    if (cycles > mostCycles || ::_localtime64_s(&local, &known) != 0) {
        return std::nullopt;
    }
    local.tm_year += static_cast<int>(cycles) * cycleYears;
    return local;
}

} // namespace common2
