/// Texts in the platform's wide characters.
#pragma once

#include <string>
#include <string_view>

namespace common2 {

/// The text in UTF-8. What is no character becomes U+FFFD.
std::string toUtf8(std::wstring_view text);

} // namespace common2
