#include "common2/util/LocalTimeText.h"

#include "common2/util/LocalTime.h"
#include "common2/util/WideText.h"

#include <cwchar>

namespace common2 {
namespace {

constexpr std::size_t longestText = 64; ///< in wide characters, with the NUL

} // namespace

std::string localTimeText(std::int64_t time, const wchar_t* format) {
    const auto local = localTime(time);
    if (!local) {
        return {};
    }
    wchar_t text[longestText];
    const std::size_t length = std::wcsftime(text, longestText, format, &*local);
    return toUtf8({text, length});
}

} // namespace common2
