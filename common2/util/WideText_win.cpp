#include "common2/util/WideText.h"

#include <windows.h>

namespace common2 {

std::string toUtf8(std::wstring_view wide) {
    if (wide.empty()) {
        return {};
    }
    const int units = static_cast<int>(wide.size());
    const int size = ::WideCharToMultiByte(CP_UTF8, 0, wide.data(), units, nullptr, 0, nullptr, nullptr);
    std::string text(static_cast<std::size_t>(size), '\0');
    ::WideCharToMultiByte(CP_UTF8, 0, wide.data(), units, text.data(), size, nullptr, nullptr);
    return text;
}

} // namespace common2
