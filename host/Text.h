/// Bytes on their way into and out of JSON texts and onto terminals.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace host {

/// Whether the bytes are well-formed UTF-8: no overlong forms, no surrogates, nothing past U+10FFFF.
bool isUtf8(std::string_view bytes) noexcept;

/// In the standard alphabet, padded, without line breaks.
std::string encodeBase64(std::string_view bytes);

/// The bytes of such a text; nothing for any other text.
std::optional<std::string> decodeBase64(std::string_view text);

/// The text with blanks for its control characters, which a terminal would obey.
std::string printable(std::string_view text);

/// The text as a JSON string, in its quotes.
std::string jsonString(std::string_view text);

/// The text as the value of an XML attribute between double quotes.
std::string xmlEscaped(std::string_view text);

} // namespace host
