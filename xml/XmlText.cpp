#include "xml/XmlText.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstring>

namespace {

/// The reference that stands for a character. Eight bytes are written at once, of which `size` count.
struct Reference {
    std::array<char, 8> text{};
    std::uint8_t size = 0; ///< 0: the character stands for itself
};

constexpr Reference reference(std::string_view text) {
    Reference made;
    std::ranges::copy(text, made.text.begin());
    made.size = static_cast<std::uint8_t>(text.size());
    return made;
}

constexpr auto references = [] {
    std::array<Reference, 256> table{};
    table['<'] = reference("&lt;");
    table['>'] = reference("&gt;");
    table['&'] = reference("&amp;");
    table['"'] = reference("&quot;");
    table['\''] = reference("&apos;");
    return table;
}();

constexpr std::size_t longestReference = 6;
constexpr std::size_t slack = 16; ///< what the block copies may write beyond the text

/// Characters that a plain value does not hold: the five, and the NUL at which it would end.
constexpr auto notPlain = []() {
    std::array<bool, 256> table{};
    for (std::size_t code = 0; code < table.size(); ++code) {
        table[code] = code == 0 || references[code].size != 0;
    }
    return table;
}();

bool isPlain(char character) { return !notPlain[static_cast<unsigned char>(character)]; }

const Reference& referenceOf(char character) { return references[static_cast<unsigned char>(character)]; }

/// Writes one character, as a reference unless it stands for itself.
char* putEscaped(char* out, char character, char kept) {
    const Reference& found = referenceOf(character);
    if (found.size == 0 || character == kept) {
        *out = character;
        return out + 1;
    }
    std::memcpy(out, found.text.data(), found.text.size());
    return out + found.size;
}

/// Sixteen characters that are looked at together.
using Block = unsigned char __attribute__((vector_size(16)));

/// Copies sixteen characters whole and counts those before the first that is special.
/// @return 16 if none is
std::size_t copyBlock(char* out, const char* in) {
    Block block;
    std::memcpy(&block, in, sizeof block);
    std::memcpy(out, &block, sizeof block);
    // "&" and "\"" differ in one bit, and so do "<" and ">".
    const auto special = ((block & 0xFB) == 0x22) | (block == 0x27) | ((block & 0xFD) == 0x3C);
    static_assert(('"' | 4) == '&' && ('<' | 2) == '>' && '"' == 0x22 && '\'' == 0x27 && '<' == 0x3C);
    std::array<std::uint64_t, 2> halves;
    std::memcpy(halves.data(), &special, sizeof special);
    if (halves[0] != 0) {
        return static_cast<std::size_t>(std::countr_zero(halves[0])) / 8;
    }
    return halves[1] != 0 ? 8 + static_cast<std::size_t>(std::countr_zero(halves[1])) / 8 : 16;
}
static_assert(std::endian::native == std::endian::little,
              "the first character is the lowest byte of its half");

/// @param out has room for the longest form of the text and the slack
char* escapePart(char* out, const char* in, const char* end, char kept) {
    while (static_cast<std::size_t>(end - in) >= sizeof(Block)) {
        const std::size_t plain = copyBlock(out, in);
        out += plain;
        in += plain;
        if (plain < sizeof(Block)) {
            out = putEscaped(out, *in++, kept);
        }
    }
    while (in != end) {
        out = putEscaped(out, *in++, kept);
    }
    return out;
}

/// Appends a value in double quotes if it is short and plain, as most values are.
bool appendPlainlyQuoted(common2::TextBuffer& out, std::string_view value) {
    constexpr std::size_t longest = 64;
    if (value.size() > longest) {
        return false;
    }
    char* to = out.room(value.size() + 2);
    *to++ = '"';
    for (const char character : value) {
        if (!isPlain(character)) {
            return false;
        }
        *to++ = character;
    }
    *to++ = '"';
    out.endAt(to);
    return true;
}

} // namespace

void appendEscaped(common2::TextBuffer& out, std::string_view text, char kept) {
    constexpr std::size_t part = 4096; // so that the room for the longest form stays small
    if (text.size() > part) {
        out.room(2 * text.size()); // what JSON needs: a long text then grows the buffer once
    }
    while (!text.empty()) {
        const std::string_view now = text.substr(0, part);
        char* room = out.room(now.size() * longestReference + slack);
        out.endAt(escapePart(room, now.data(), now.data() + now.size(), kept));
        text.remove_prefix(now.size());
    }
}

void appendQuoted(common2::TextBuffer& out, std::string_view value) {
    if (appendPlainlyQuoted(out, value)) {
        return;
    }
    value = value.substr(0, value.find('\0'));
    const bool holdsDouble = value.find('"') != std::string_view::npos;
    const char quote = holdsDouble ? '\'' : '"';
    out.append(quote);
    appendEscaped(out, value, holdsDouble ? '"' : '\'');
    out.append(quote);
}
