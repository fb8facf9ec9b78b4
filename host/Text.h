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

/// The text on one line, as a terminal may show it: what would break the line, steer the terminal or change
/// the order of the characters is spelled out, as "\n", "\t", "\r", "\u001B" or "\u202E", and a byte that is
/// not UTF-8 as
/// "\xFF". A backslash stays as it is.
std::string printable(std::string_view text);

/// The text as a JSON string, in its quotes.
std::string jsonString(std::string_view text);

/// The text as the value of an XML attribute between double quotes.
std::string xmlEscaped(std::string_view text);

} // namespace host
