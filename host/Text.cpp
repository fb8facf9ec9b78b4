#include "host/Text.h"

#include <boost/json/serialize.hpp>
#include <boost/json/value.hpp>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace host {
namespace {

using Byte = unsigned char;

/// How long the well-formed sequence at the front of `bytes` is; 0 if there is none.
std::size_t sequenceLength(std::string_view bytes) noexcept {
    const auto at = [&](std::size_t index) { return static_cast<Byte>(bytes[index]); };
    const Byte lead = at(0);
    if (lead < 0x80) {
        return 1;
    }
    if (lead < 0xC2 || lead > 0xF4) {
        return 0;
    }
    const std::size_t length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    if (bytes.size() < length) {
        return 0;
    }
    // The second byte's range rules out overlong forms, surrogates and what lies past the last code point.
    const Byte lowest = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
    const Byte highest = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
    if (at(1) < lowest || at(1) > highest) {
        return 0;
    }
    for (std::size_t i = 2; i < length; ++i) {
        if (at(i) < 0x80 || at(i) > 0xBF) {
            return 0;
        }
    }
    return length;
}

/// The character of a well-formed sequence.
char32_t characterOf(std::string_view sequence) noexcept {
    const auto lead = static_cast<Byte>(sequence.front());
    char32_t character = sequence.size() == 1 ? lead : lead & (0x7Fu >> sequence.size());
    for (const char byte : sequence.substr(1)) {
        character = character << 6 | (static_cast<Byte>(byte) & 0x3Fu);
    }
    return character;
}

/// Whether a terminal or a page does something for the character instead of showing it: a control character,
/// a line or paragraph separator, or what changes the direction of writing.
constexpr bool isObeyed(char32_t character) noexcept {
    return character < 0x20 || (character >= 0x7F && character <= 0x9F) ||
           (character >= 0x2028 && character <= 0x202E) || (character >= 0x2066 && character <= 0x2069);
}

constexpr std::string_view namedControls = "\n\r\t";
constexpr std::string_view controlNames = "nrt";

void appendHex(std::string& text, std::string_view prefix, char32_t number, int digits) {
    text += prefix;
    while (digits-- > 0) {
        text += "0123456789ABCDEF"[number >> 4 * digits & 0xF];
    }
}

constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
static_assert(alphabet.size() == 64);

constexpr std::uint32_t noDigit = 64;

constexpr std::array<std::uint8_t, 256> digitOf = []() {
    std::array<std::uint8_t, 256> table{};
    table.fill(noDigit);
    for (std::size_t i = 0; i < alphabet.size(); ++i) {
        table[static_cast<Byte>(alphabet[i])] = static_cast<std::uint8_t>(i);
    }
    return table;
}();

constexpr std::size_t padding(std::string_view text) noexcept {
    const bool one = !text.empty() && text.back() == '=';
    const bool two = one && text[text.size() - 2] == '=';
    return two ? 2 : one ? 1 : 0;
}

} // namespace

bool isUtf8(std::string_view bytes) noexcept {
    while (!bytes.empty()) {
        const std::size_t length = sequenceLength(bytes);
        if (length == 0) {
            return false;
        }
        bytes.remove_prefix(length);
    }
    return true;
}

std::string encodeBase64(std::string_view bytes) {
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    for (; !bytes.empty(); bytes.remove_prefix(bytes.size() < 3 ? bytes.size() : 3)) {
        std::uint32_t group = 0;
        for (std::size_t i = 0; i < 3; ++i) {
            group = group << 8 | (i < bytes.size() ? static_cast<Byte>(bytes[i]) : 0u);
        }
        for (std::size_t i = 0; i < 4; ++i) {
            text += i <= bytes.size() ? alphabet[group >> (18 - 6 * i) & 63] : '=';
        }
    }
    return text;
}

std::optional<std::string> decodeBase64(std::string_view text) {
    if (text.size() % 4 != 0) {
        return std::nullopt;
    }
    const std::size_t padded = padding(text);
    const std::size_t digits = text.size() - padded;
    std::string bytes;
    bytes.reserve(text.size() / 4 * 3);
    std::uint32_t bits = 0;
    for (std::size_t i = 0; i < digits; ++i) {
        const std::uint32_t digit = digitOf[static_cast<Byte>(text[i])];
        if (digit == noDigit) {
            return std::nullopt;
        }
        bits = (bits << 6 | digit) & 0xFFF;
        switch (i % 4) { // each digit after the first of a group completes one more byte
        case 1:
            bytes += static_cast<char>(bits >> 4 & 0xFF);
            break;
        case 2:
            bytes += static_cast<char>(bits >> 2 & 0xFF);
            break;
        case 3:
            bytes += static_cast<char>(bits & 0xFF);
            break;
        default:
            break;
        }
    }
    // What the last digit holds beyond its byte has to be zero: one byte sequence has one text.
    const std::uint32_t rest = padded == 2 ? bits & 0xF : padded == 1 ? bits & 0x3 : 0;
    return rest == 0 ? std::optional(std::move(bytes)) : std::nullopt;
}

std::string printable(std::string_view text) {
    std::string safe;
    safe.reserve(text.size());
    while (!text.empty()) {
        const std::size_t length = sequenceLength(text);
        const std::string_view sequence = text.substr(0, std::max<std::size_t>(length, 1));
        text.remove_prefix(sequence.size());
        if (length == 0) {
            appendHex(safe, "\\x", static_cast<Byte>(sequence.front()), 2);
        } else if (const char32_t character = characterOf(sequence); !isObeyed(character)) {
            safe += sequence;
        } else if (const std::size_t named = namedControls.find(sequence); named != std::string_view::npos) {
            safe += {'\\', controlNames[named]};
        } else {
            appendHex(safe, "\\u", character, 4);
        }
    }
    return safe;
}

std::string jsonString(std::string_view text) { return boost::json::serialize(boost::json::value(text)); }

std::string xmlEscaped(std::string_view text) {
    std::string escaped;
    for (const char character : text) {
        switch (character) {
        case '&':
            escaped += "&amp;";
            break;
        case '<':
            escaped += "&lt;";
            break;
        case '>':
            escaped += "&gt;";
            break;
        case '"':
            escaped += "&quot;";
            break;
        default:
            escaped += character;
        }
    }
    return escaped;
}

} // namespace host
