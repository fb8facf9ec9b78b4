#include "xml/Base64.h"

#include <cstddef>
#include <cstdint>

std::string base64Encode(std::string_view bytes) {
    constexpr char alphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    const auto byteAt = [&](std::size_t index) -> std::uint32_t {
        return index < bytes.size() ? static_cast<unsigned char>(bytes[index]) : 0u;
    };

    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    for (std::size_t index = 0; index < bytes.size(); index += 3) {
        const std::uint32_t triple = byteAt(index) << 16 | byteAt(index + 1) << 8 | byteAt(index + 2);
        text += alphabet[triple >> 18];
        text += alphabet[triple >> 12 & 63];
        text += index + 1 < bytes.size() ? alphabet[triple >> 6 & 63] : '=';
        text += index + 2 < bytes.size() ? alphabet[triple & 63] : '=';
    }
    return text;
}
