/// The input lines of session files as a table: which keys a line has, of which kind, in which order.
#pragma once

#include "host/SessionInput.h"

#include <cstdint>
#include <span>
#include <string_view>

namespace host {

enum class KeyKind {
    Text,         ///< bytes: a text, or Base64 under the key with "_base64" behind it
    NullableText, ///< the same, or null
    Name,         ///< a text
    NullableName, ///< a text or null
    Word,         ///< one of `words`
    Flag,         ///< true or false
    True,         ///< true
    Count,        ///< a whole number from `lowest` to `highest`
    Number,       ///< a whole number of 32 bits with a sign
};

struct KeyRule {
    std::string_view name;
    KeyKind kind;
    bool isRequired = true;
    std::span<const std::string_view> words = {};
    std::uint64_t lowest = 0;
    std::uint64_t highest = 0;
};

struct LineRule {
    std::string_view word; ///< value of "do"
    InputKind kind;
    std::span<const KeyRule> keys; ///< in their order; "object" stands before them
};

/// The rules for one value of "do", or none for an unknown one. Where there are several, the first key of
/// each tells them apart.
std::span<const LineRule> lineRules(std::string_view word);

} // namespace host
