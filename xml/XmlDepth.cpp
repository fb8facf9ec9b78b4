#include "xml/XmlDepth.h"

#include <array>
#include <cstring>
#include <string_view>

namespace {

/// Sorts of characters: blank, and those that may stand in names. A NUL is of no sort.
enum CharacterSort : unsigned char { Blank = 1, ElementName = 2, AttributeName = 4 };

constexpr std::array<unsigned char, 256> characterSorts = []() {
    std::array<unsigned char, 256> sorts{};
    const auto isOneOf = [](std::size_t code, std::string_view characters) {
        return characters.find(static_cast<char>(code)) != std::string_view::npos;
    };
    for (std::size_t code = 1; code < sorts.size(); ++code) {
        const bool isBlank = isOneOf(code, " \t\r\n");
        const bool isInElementName = !isBlank && !isOneOf(code, "/>?");
        const bool isInAttributeName = isInElementName && !isOneOf(code, "<=!");
        sorts[code] = static_cast<unsigned char>((isBlank ? Blank : 0) | (isInElementName ? ElementName : 0) |
                                                 (isInAttributeName ? AttributeName : 0));
    }
    return sorts;
}();

bool is(CharacterSort sort, char character) noexcept {
    return (characterSorts[static_cast<unsigned char>(character)] & sort) != 0;
}

/// The functions below walk from inside a piece of markup to what stands behind it. Null: the text ends or is
/// broken there, and the library would read no further.

const char* skip(CharacterSort sort, const char* at) noexcept {
    while (is(sort, *at)) {
        ++at;
    }
    return at;
}

const char* behind(const char* at, const char* end) noexcept {
    const char* found = std::strstr(at, end);
    return found ? found + std::strlen(end) : nullptr;
}

bool beginsWith(const char* text, std::string_view begin) noexcept {
    return std::strncmp(text, begin.data(), begin.size()) == 0;
}

/// Behind a document type: its `>` is the first that does not stand between brackets.
const char* behindDoctype(const char* at) noexcept {
    std::size_t brackets = 0;
    for (; *at; ++at) {
        if (*at == '[') {
            ++brackets;
        } else if (*at == ']') {
            brackets -= brackets > 0 ? 1 : 0;
        } else if (*at == '>' && brackets == 0) {
            return at + 1;
        }
    }
    return nullptr;
}

/// From the exclamation mark of a comment, a CDATA section, a document type or something unknown.
const char* behindExclamation(const char* at) noexcept {
    constexpr std::string_view comment = "!--";
    constexpr std::string_view cdata = "![CDATA[";
    constexpr std::string_view doctype = "!DOCTYPE";
    if (beginsWith(at, comment)) {
        return behind(at + comment.size(), "-->");
    }
    if (beginsWith(at, cdata)) {
        return behind(at + cdata.size(), "]]>");
    }
    if (beginsWith(at, doctype) && is(Blank, at[doctype.size()])) {
        return behindDoctype(at + doctype.size() + 1);
    }
    return behind(at, ">");
}

/// From behind an attribute's name.
const char* behindAttributeValue(const char* at) noexcept {
    at = skip(Blank, at);
    if (*at != '=') {
        return nullptr;
    }
    at = skip(Blank, at + 1);
    if (*at != '"' && *at != '\'') {
        return nullptr;
    }
    const char* end = std::strchr(at + 1, *at);
    return end ? skip(Blank, end + 1) : nullptr;
}

/// From an element's name, up to the `>` or the `/` that ends its tag.
const char* endOfTag(const char* at) noexcept {
    if (!is(ElementName, *at)) {
        return nullptr;
    }
    at = skip(Blank, skip(ElementName, at));
    while (at && is(AttributeName, *at)) {
        at = behindAttributeValue(skip(AttributeName, at));
    }
    return at;
}

} // namespace

bool nestsDeeperThan(const char* text, std::size_t limit) noexcept {
    std::size_t depth = 0;
    for (const char* at = std::strchr(text, '<'); at; at = at ? std::strchr(at, '<') : nullptr) {
        ++at;
        if (*at == '?') {
            at = behind(at + 1, "?>");
        } else if (*at == '!') {
            at = behindExclamation(at);
        } else if (*at == '/' && depth > 0) {
            // Such a name may hold what looks like a start tag.
            at = skip(ElementName, at + 1);
            --depth;
        } else {
            at = endOfTag(at);
            if (at && depth == limit) {
                return true;
            }
            depth += at && *at == '>' ? 1 : 0;
        }
    }
    return false;
}
