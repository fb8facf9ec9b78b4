/// What the notices of a plugin add up to: the screen that a user would see.
#pragma once

#include "host/Notice.h"

#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace host {

/// A label, a button or another control, with the attributes that the notices gave it so far.
struct ScreenControl {
    std::string element; ///< "label", "button", ...
    std::map<std::string, std::string, std::less<>> attributes;

    std::string_view id() const { return attribute("id"); }
    std::string_view attribute(std::string_view key) const;
    bool isHidden() const { return attribute("hidden") == "true"; }
    bool isDisabled() const { return attribute("disabled") == "true"; }
};

/// A part of the screen, laid out by one "setup" notice: the tile, or a group of the advanced window.
struct ScreenPart {
    std::vector<ScreenControl> controls; ///< in the order of their first appearance

    const ScreenControl* find(std::string_view id) const;
    bool isTile() const;
};

struct StatisticsRow {
    std::string id;
    std::vector<std::string> columns;

    bool operator==(const StatisticsRow&) const = default;
};
struct StatisticsGroup {
    std::string id;
    std::string title;
    std::vector<StatisticsRow> rows;

    bool operator==(const StatisticsGroup&) const = default;
};
using StatisticsList = std::vector<StatisticsGroup>;

/// A dialog, a browser or a toast.
struct ScreenPopup {
    std::string id;
    std::string type; ///< "custom", "browser", "notification"
    std::string title;
    std::vector<std::string> texts;      ///< labels and text lines, from the top
    std::vector<ScreenControl> controls; ///< buttons and browsers
};

/// One thing that a notice did to the screen.
struct ScreenChange {
    enum class Kind {
        Part,         ///< `index` of a part whose controls were written
        TrayState,    ///< the tray icon's state or text was written
        Statistics,   ///< `text` is the id of a list that was written
        Toast,        ///< `popup` came up and goes by itself
        PopupOpened,  ///< `popup` came up, new or in the place of one with its id
        PopupRaised,  ///< `popup`, open already, came to the front
        PopupClosed,  ///< `popup` went
        History,      ///< `text` joined the message history
        WindowShown,  ///< the host's window is to show
        WindowHidden, ///< the host's window is to hide
        Unreadable,   ///< `text` tells why the notice could not be read
    };

    Kind kind;
    std::size_t index = 0;
    std::string text = {};
    ScreenPopup popup = {};
};

/// Not for several threads at once.
class ScreenModel {
public:
    /// Takes one notice. Notices for the host's log change nothing.
    /// @return what it did, in the order of the screen
    std::vector<ScreenChange> apply(std::string_view xml);

    const std::vector<ScreenPart>& parts() const noexcept { return ownParts; }
    const std::string& trayState() const noexcept { return ownTrayState; }
    const std::string& trayText() const noexcept { return ownTrayText; }
    /// By the list's id.
    const std::map<std::string, StatisticsList, std::less<>>& statistics() const noexcept {
        return ownStatistics;
    }
    /// The popups that are open, by id.
    const std::map<std::string, ScreenPopup, std::less<>>& popups() const noexcept { return ownPopups; }

private:
    using Changes = std::vector<ScreenChange>;

    void applyScreen(const NoticeElement& notice, Changes& changes);
    void applyControls(const NoticeElement& notice, bool isSetup, Changes& changes);
    void applyTray(const NoticeElement& notice, Changes& changes);
    void applyList(const NoticeElement& list, Changes& changes);
    void applyPopup(const NoticeElement& popup, Changes& changes);
    std::size_t partFor(const std::vector<const NoticeElement*>& controls, bool isSetup);

    std::vector<ScreenPart> ownParts;
    std::string ownTrayState;
    std::string ownTrayText;
    std::map<std::string, StatisticsList, std::less<>> ownStatistics;
    std::map<std::string, ScreenPopup, std::less<>> ownPopups;
};

} // namespace host
