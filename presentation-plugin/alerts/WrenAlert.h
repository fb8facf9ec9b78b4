/// One alert, and the list of them that tile, toasts and alert page show.
#pragma once

#include "common/api/QuillTimePoint.h"
#include "presentation-plugin/alerts/WrenAlertAction.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

/// A problem or a pending action of the user. Texts are UTF-8; an empty one has nothing to say in its place.
struct WrenAlert_t {
    std::int32_t type = 0;     ///< the priority of the alert's row of fixed texts; 2 asks the user to verify
    std::int32_t priority = 0; ///< the same; smaller comes first
    QuillTimePoint timestamp = 0;
    std::string tile_message;
    std::string tile_title;
    std::string title;
    std::string short_message;
    std::string long_message;
    std::string toast_title;
    std::string toast_message;
    std::shared_ptr<const IWrenAlertAction> action; ///< null if there is nothing to do

    /// Compares all fields; actions by class and content.
    bool operator==(const WrenAlert_t& other) const;
};

struct WrenAlertList_t {
    std::vector<WrenAlert_t> alerts; ///< in the order of display

    /// What a page of several alerts says around them; empty where it says nothing.
    std::string section_title;
    std::string section_description;
    std::string section_action_label;
    std::string list_title;
    std::string list_description;

    bool operator==(const WrenAlertList_t&) const = default;
};

/// Whether any alert of the new list has no equal in the old one, wherever it stands there. The lists' own
/// texts do not count. Among n alerts it makes some n log n comparisons at most, whatever the alerts say.
bool hasNewAlert(const WrenAlertList_t& newList, const WrenAlertList_t& oldList);
