/// The present time, and what a time is in the local zone. Times are counted in 64 bits on every system:
/// `std::time_t` of 32-bit Windows ends in January 2038.
#pragma once

#include <cstdint>
#include <ctime>
#include <optional>

namespace common2 {

/// The system's clock, in seconds since 1970-01-01 UTC. Any thread.
std::int64_t presentSeconds() noexcept;

/// The same in microseconds.
std::int64_t presentMicroseconds() noexcept;

/// Has the C library read the local zone again, at most once a second. By itself it reads the zone when it
/// first converts a time, and never again. Any thread.
/// @param second the present one
void followTimeZone(std::int64_t second) noexcept;

/// Has it read the zone at once.
void readTimeZone() noexcept;

/// Breaks a time down in the local zone as it was last read. Any thread.
/// @param seconds since 1970-01-01 UTC
/// @return nothing for a time without a calendar date: one whose year no `int` holds, and on Windows one
///         before 1970
std::optional<std::tm> localTime(std::int64_t seconds) noexcept;

} // namespace common2
