#include "xml/ControlIndex.h"

#include <algorithm>

namespace {

/// Room for the controls of any one screen part, so that a notice allocates its index once.
constexpr std::size_t usualControlCount = 8;

} // namespace

void ControlIndex::add(std::string_view id, const XmlUICtrl& control) {
    if (entries.empty()) {
        entries.reserve(usualControlCount);
    }
    entries.push_back({id, control});
}

const XmlUICtrl* ControlIndex::find(std::string_view id) const noexcept {
    const auto entry = std::find_if(entries.rbegin(), entries.rend(),
                                    [id](const Entry& candidate) { return candidate.id == id; });
    return entry == entries.rend() ? nullptr : &entry->control;
}
