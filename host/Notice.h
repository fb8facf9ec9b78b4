/// The notices of a plugin as a host reads them.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace host {

/// One element of a notice, with copies of all that it holds.
struct NoticeElement {
    std::string name;
    std::string text;                                            ///< between its tags
    std::vector<std::pair<std::string, std::string>> attributes; ///< in their order
    std::vector<NoticeElement> children;                         ///< in their order

    /// Value of an attribute; empty if the element lacks it.
    std::string_view attribute(std::string_view key) const;
    bool has(std::string_view key) const;
    /// The first child of that name, or null.
    const NoticeElement* child(std::string_view key) const;
};

/// Reads a notice.
/// @return its root element, "vtguiNotice"
/// @throws HostError for a text that is no XML or has another root
NoticeElement parseNotice(std::string_view xml);

} // namespace host
