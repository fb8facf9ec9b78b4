#include "common2/util/WideText.h"

#include <cstdint>

namespace common2 {
namespace {

// A wide character is a whole code point here.
static_assert(sizeof(wchar_t) == sizeof(std::uint32_t));

constexpr std::uint32_t replacementCharacter = 0xFFFD;
constexpr std::uint32_t lastCodePoint = 0x10FFFF;

bool isSurrogate(std::uint32_t code) { return code >= 0xD800 && code <= 0xDFFF; }

char continuation(std::uint32_t code, int shift) { return static_cast<char>(0x80 | (code >> shift & 0x3F)); }

void appendUtf8(std::string& text, std::uint32_t code) {
    if (code > lastCodePoint || isSurrogate(code)) {
        code = replacementCharacter;
    }
    if (code < 0x80) {
        text += static_cast<char>(code);
    } else if (code < 0x800) {
        text += static_cast<char>(0xC0 | code >> 6);
        text += continuation(code, 0);
    } else if (code < 0x10000) {
        text += static_cast<char>(0xE0 | code >> 12);
        text += continuation(code, 6);
        text += continuation(code, 0);
    } else {
        text += static_cast<char>(0xF0 | code >> 18);
        text += continuation(code, 12);
        text += continuation(code, 6);
        text += continuation(code, 0);
    }
}

} // namespace

std::string toUtf8(std::wstring_view wide) {
    std::string text;
    text.reserve(wide.size());
    for (const wchar_t character : wide) {
        appendUtf8(text, static_cast<std::uint32_t>(character));
    }
    return text;
}

} // namespace common2
