/// The screen of a user, kept for those who watch it.
#pragma once

#include "host/ScreenModel.h"

#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace host::serve {

/// The page in a browser popup.
struct LiveBrowser {
    std::uint64_t number = 0; ///< one for each page that is opened
    std::string control;      ///< id of the control that shows it
    std::string operation;    ///< of the notice that came last
    std::string address;      ///< of the frame, relative to the viewer's page; empty: no frame can show it
    std::string startUrl;
    std::string finalUrl;
    std::string cookieName;
    std::string detail;             ///< what the page is told; empty: nothing
    std::uint64_t detailNumber = 0; ///< one for each detail, over all browsers
};

struct LivePopup {
    ScreenPopup popup;
    std::uint64_t number = 0; ///< one for each time that any popup comes to the front
    std::optional<LiveBrowser> browser;
};

struct LiveToast {
    std::uint64_t number = 0;
    std::int64_t time = 0; ///< milliseconds since 1970
    ScreenPopup toast;
};

struct LiveMessage {
    std::uint64_t number = 0;
    std::int64_t time = 0;
    std::string text;
};

/// What the notices add up to, with what a picture of it needs beyond that: who is in front, and what has
/// come and gone. Not for several threads at once.
class LiveScreen {
public:
    /// What is to be done when pages come and go.
    struct BrowserHooks {
        /// Says at which address a frame can show the page; empty: at none.
        std::function<std::string(const LiveBrowser&)> opened;
        std::function<void(std::uint64_t number)> closed;
    };

    explicit LiveScreen(BrowserHooks usedHooks);

    /// Takes one notice. @param time when it came, milliseconds since 1970
    /// @return what is wrong with it, or nothing
    std::optional<std::string> apply(std::string_view xml, std::int64_t time);
    /// The plugin is gone, and with it all that it has shown but the message history.
    void clear();
    void clearHistory();

    /// Counts up with every change.
    std::uint64_t version() const noexcept { return ownVersion; }
    const ScreenModel& model() const noexcept { return screen; }
    /// "shown", "hidden" or empty: the window was never spoken of.
    std::string_view window() const noexcept { return ownWindow; }
    /// In the order in which they came to the front.
    const std::vector<LivePopup>& popups() const noexcept { return openPopups; }
    /// The latest ones, from the oldest.
    const std::deque<LiveToast>& toasts() const noexcept { return latestToasts; }
    const std::deque<LiveMessage>& history() const noexcept { return latestMessages; }

    const LivePopup* findPopup(std::string_view id) const;
    const LivePopup* findBrowser(std::uint64_t number) const;
    /// A control of a part, a popup or a toast, whichever comes first; null if there is none.
    const ScreenControl* findControl(std::string_view id) const;

private:
    void follow(const ScreenChange& change, std::int64_t time);
    void open(const ScreenPopup& popup);
    void raise(const std::string& id);
    void close(std::string_view id);
    std::optional<LiveBrowser> browserOf(const ScreenPopup& popup, const LivePopup* before);

    BrowserHooks hooks;
    ScreenModel screen;
    std::uint64_t ownVersion = 1;
    std::string_view ownWindow;
    std::vector<LivePopup> openPopups;
    std::deque<LiveToast> latestToasts;
    std::deque<LiveMessage> latestMessages;
    std::uint64_t popupNumber = 0;
    std::uint64_t browserNumber = 0;
    std::uint64_t detailNumber = 0;
    std::uint64_t toastNumber = 0;
    std::uint64_t messageNumber = 0;
};

} // namespace host::serve
