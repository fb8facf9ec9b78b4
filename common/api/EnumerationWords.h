/// The words of an enumeration: what the backend calls its values, and what people read. One constant table
/// an enumeration, beside it, and one lookup each way for all of them.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

template <class Enumeration>
struct EnumerationWord {
    Enumeration value;
    std::optional<std::string_view> literal; ///< as JSON carries it; none where the backend never sends it
    std::string_view name;                   ///< as panels and log show it
};

template <class Enumeration, std::size_t size>
using EnumerationWordTable = std::array<EnumerationWord<Enumeration>, size>;

/// The table of an enumeration: specialised beside each, an EnumerationWordTable in the order of its values.
template <class Enumeration>
inline constexpr int enumerationWords = 0;

/// The name of a value; an empty text for a value outside the table.
template <class Enumeration>
constexpr std::string_view nameOf(Enumeration value) noexcept {
    for (const EnumerationWord<Enumeration>& word : enumerationWords<Enumeration>) {
        if (word.value == value) {
            return word.name;
        }
    }
    return {};
}

/// The value that a literal stands for, case included; none for a literal outside the table.
template <class Enumeration>
constexpr std::optional<Enumeration> valueOfLiteral(std::string_view literal) noexcept {
    for (const EnumerationWord<Enumeration>& word : enumerationWords<Enumeration>) {
        if (word.literal == literal) {
            return word.value;
        }
    }
    return std::nullopt;
}

/// Whether a table lists the values 0, 1, 2... up to `last`, each in its place.
template <class Enumeration>
consteval bool coversEnumeration(Enumeration last) {
    std::size_t index = 0;
    for (const EnumerationWord<Enumeration>& word : enumerationWords<Enumeration>) {
        if (static_cast<std::size_t>(word.value) != index++) {
            return false;
        }
    }
    return index == static_cast<std::size_t>(last) + 1;
}
