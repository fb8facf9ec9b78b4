/// A transition table in words: its regions, their states and rows.
#pragma once

#include <string>
#include <vector>

namespace smlDescription {

/// One row as it stands in the table.
struct Row {
    std::string from;
    std::string event;  ///< empty: completion
    std::string guard;  ///< empty: always
    std::string action; ///< several are separated by ", "; empty: none
    std::string to;     ///< empty: the state stays

    bool operator==(const Row&) const = default;
};

struct Region {
    std::string initial;
    std::vector<std::string> states; ///< in the order of their first appearance
    std::vector<Row> rows;           ///< in the table's order
};

} // namespace smlDescription
