/// The lookup that all string tables share.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

/// Logs that `function` was asked for a row beyond its table.
void logUnexpectedStringTableId(std::uint8_t id, std::string_view function);

/// The row of the id; row 0, with a line in the log, for an id beyond the table.
/// @param function qualified name of the operation that asks
template <class Row, std::size_t size>
const Row& stringTableRow(const std::array<Row, size>& rows, std::uint8_t id, std::string_view function) {
    if (id >= size) {
        logUnexpectedStringTableId(id, function);
        return rows[0];
    }
    return rows[id];
}
