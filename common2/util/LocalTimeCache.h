/// Local times that are written over and over.
#pragma once

#include "common2/util/LocalTime.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace common2 {

/// Keeps the last texts of `localTimeText` for the rest of the second: breaking a time down costs
/// microseconds, since the C library looks at the system's time zone each time, and the same few times are
/// written again and again. A change of the time zone shows within a second. Belongs to one thread at a time.
class LocalTimeCache {
public:
    using Clock = std::int64_t (*)();

    /// @param clock tells the present time, in seconds since 1970-01-01 UTC
    explicit LocalTimeCache(Clock clock = &presentSeconds);

    /// The present time, valid until the next call.
    /// @param format as for `localTimeText`, a constant: it is known again by its address
    std::string_view now(const wchar_t* format);
    /// That time, in the same way.
    std::string_view at(std::int64_t time, const wchar_t* format);

private:
    struct Entry {
        std::int64_t time = 0;
        const wchar_t* format = nullptr;
        std::string text;
    };

    std::int64_t forgetOlderSeconds();
    std::string_view find(std::int64_t time, const wchar_t* format);

    Clock clock;
    std::int64_t second = 0;       ///< in which the entries were made
    std::array<Entry, 16> entries; ///< more than a rendering writes
    std::size_t used = 0;
    std::size_t oldest = 0; ///< the entry that gives way when all are used
};

} // namespace common2
