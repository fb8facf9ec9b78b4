#include "common2/util/LocalTimeText.h"

#include "common2/util/WideText.h"

#include <ctime>
#include <cwchar>

namespace common2 {
namespace {

constexpr std::size_t longestText = 64; ///< in wide characters, with the NUL

} // namespace

std::string localTimeText(std::int64_t time, const wchar_t* format) {
    std::tm local{};
    if (::_localtime64_s(&local, &time) != 0) {
        return {};
    }
    wchar_t text[longestText];
    const std::size_t length = std::wcsftime(text, longestText, format, &local);
    return length < longestText ? toUtf8({text, length})
                                : std::string(); // some count what they had to cut off
}

} // namespace common2
