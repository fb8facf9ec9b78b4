/// The controls of a document by their ids.
#pragma once

#include "xml/XmlUICtrl.h"

#include <string_view>
#include <vector>

/// Finds controls by exact id. Ids are not copied: they point into the document, which outlives the index.
/// A document has few controls, so they are kept in the order of their entry and searched in line.
class ControlIndex {
public:
    /// Enters a control under an id, over any earlier one of that id.
    void add(std::string_view id, const XmlUICtrl& control);
    /// The control entered last under that id, null if there is none.
    const XmlUICtrl* find(std::string_view id) const noexcept;
    void clear() noexcept { entries.clear(); }

private:
    struct Entry {
        std::string_view id;
        XmlUICtrl control;
    };
    std::vector<Entry> entries;
};
