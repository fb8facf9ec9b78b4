/// Times as the user's locale writes them.
#pragma once

#include <cstdint>
#include <string>

namespace common2 {

/// A point in time, broken down in local time as `localTime` does, and written by the C library's wide
/// formatter, in UTF-8.
/// @param time seconds since 1970-01-01 UTC
/// @param format as wcsftime takes it
/// @return empty if the time has no calendar date or its text is longer than 63 characters
std::string localTimeText(std::int64_t time, const wchar_t* format);

} // namespace common2
