#include "common2/util/LocalTimeText.h"

#include "common2/util/LocalTime.h"
#include "common2/util/WideText.h"

#include <cwchar>

namespace common2 {
namespace {

constexpr std::size_t longestText = 64; ///< in wide characters, with the NUL

/// The C library writes years of four digits, and may end the process at a longer one. The calendar repeats
/// itself after 400 years: a later year is written as one that is like it, down to the last two digits. "%c"
/// and "%x" show no others.
std::tm writable(std::tm time) {
    constexpr int lastYear = 9999 - 1900;
    constexpr int cycleYears = 400;
    if (time.tm_year > lastYear) {
        time.tm_year -= (time.tm_year - lastYear + cycleYears - 1) / cycleYears * cycleYears;
    }
    return time;
}

} // namespace

std::string localTimeText(std::int64_t time, const wchar_t* format) {
    const auto local = localTime(time);
    if (!local) {
        return {};
    }
    const std::tm written = writable(*local);
    wchar_t text[longestText];
    const std::size_t length = std::wcsftime(text, longestText, format, &written);
    return length < longestText ? toUtf8({text, length})
                                : std::string(); // some count what they had to cut off
}

} // namespace common2
