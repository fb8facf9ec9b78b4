#include "host/serve/LiveScreen.h"

#include <algorithm>
#include <utility>

namespace host::serve {
namespace {

using Kind = ScreenChange::Kind;

constexpr std::size_t mostToasts = 8;
constexpr std::size_t mostMessages = 200;

template <class Container, class Item>
void addLatest(Container& latest, Item item, std::size_t most) {
    latest.push_back(std::move(item));
    if (latest.size() > most) {
        latest.pop_front();
    }
}

const ScreenControl* browserControl(const ScreenPopup& popup) {
    const auto found = std::find_if(popup.controls.begin(), popup.controls.end(),
                                    [](const auto& control) { return control.element == "webbrowser"; });
    return found == popup.controls.end() ? nullptr : &*found;
}

const ScreenControl* findIn(const std::vector<ScreenControl>& controls, std::string_view id) {
    const auto found = std::find_if(controls.begin(), controls.end(),
                                    [&](const ScreenControl& control) { return control.id() == id; });
    return found == controls.end() ? nullptr : &*found;
}

} // namespace

LiveScreen::LiveScreen(BrowserHooks usedHooks)
    : hooks(std::move(usedHooks)) {}

std::optional<std::string> LiveScreen::apply(std::string_view xml, std::int64_t time) {
    std::optional<std::string> complaint;
    for (const ScreenChange& change : screen.apply(xml)) {
        if (change.kind == Kind::Unreadable) {
            complaint = change.text;
        } else {
            follow(change, time);
            ++ownVersion;
        }
    }
    return complaint;
}

void LiveScreen::follow(const ScreenChange& change, std::int64_t time) {
    switch (change.kind) {
    case Kind::PopupOpened:
        return open(change.popup);
    case Kind::PopupRaised:
        return raise(change.popup.id);
    case Kind::PopupClosed:
        return close(change.popup.id);
    case Kind::Toast:
        return addLatest(latestToasts, LiveToast{++toastNumber, time, change.popup}, mostToasts);
    case Kind::History:
        return addLatest(latestMessages, LiveMessage{++messageNumber, time, change.text}, mostMessages);
    case Kind::WindowShown:
        ownWindow = "shown";
        return;
    case Kind::WindowHidden:
        ownWindow = "hidden";
        return;
    case Kind::Part:
    case Kind::TrayState:
    case Kind::Statistics:
    case Kind::Unreadable:
        return;
    }
}

void LiveScreen::open(const ScreenPopup& popup) {
    const LivePopup* before = findPopup(popup.id);
    LivePopup opened{popup, ++popupNumber, browserOf(popup, before)};
    const bool keepsPage = before != nullptr && before->browser && opened.browser &&
                           before->browser->number == opened.browser->number;
    if (before != nullptr && before->browser && !keepsPage) {
        hooks.closed(before->browser->number);
    }
    std::erase_if(openPopups, [&](const LivePopup& other) { return other.popup.id == popup.id; });
    openPopups.push_back(std::move(opened));
}

/// The page that a popup shows from now on. A new detail is for the page that is there already, if one is.
std::optional<LiveBrowser> LiveScreen::browserOf(const ScreenPopup& popup, const LivePopup* before) {
    const ScreenControl* control = browserControl(popup);
    if (control == nullptr) {
        return std::nullopt;
    }
    const bool isForOpenPage = control->attribute("operation") == "dispatch_event";
    LiveBrowser browser;
    if (isForOpenPage && before != nullptr && before->browser) {
        browser = *before->browser;
    }
    browser.control = control->id();
    browser.operation = control->attribute("operation");
    if (const std::string_view detail = control->attribute("event_dispatch_detail"); !detail.empty()) {
        browser.detail = detail;
        browser.detailNumber = ++detailNumber;
    }
    if (browser.number == 0) {
        browser.number = ++browserNumber;
        browser.startUrl = control->attribute("start_url");
        browser.finalUrl = control->attribute("final_url");
        browser.cookieName = control->attribute("cookie_name");
        browser.address = hooks.opened(browser);
    }
    return browser;
}

void LiveScreen::raise(const std::string& id) {
    const auto found = std::find_if(openPopups.begin(), openPopups.end(),
                                    [&](const LivePopup& popup) { return popup.popup.id == id; });
    if (found != openPopups.end()) {
        found->number = ++popupNumber;
        std::rotate(found, found + 1, openPopups.end());
    }
}

void LiveScreen::close(std::string_view id) {
    if (const LivePopup* popup = findPopup(id); popup != nullptr && popup->browser) {
        hooks.closed(popup->browser->number);
    }
    std::erase_if(openPopups, [&](const LivePopup& popup) { return popup.popup.id == id; });
}

void LiveScreen::clear() {
    while (!openPopups.empty()) {
        close(std::string(openPopups.back().popup.id));
    }
    screen = {};
    latestToasts.clear();
    ownWindow = {};
    ++ownVersion;
}

void LiveScreen::clearHistory() {
    latestMessages.clear();
    ++ownVersion;
}

const LivePopup* LiveScreen::findPopup(std::string_view id) const {
    const auto found = std::find_if(openPopups.begin(), openPopups.end(),
                                    [&](const LivePopup& popup) { return popup.popup.id == id; });
    return found == openPopups.end() ? nullptr : &*found;
}

const LivePopup* LiveScreen::findBrowser(std::uint64_t number) const {
    const auto found = std::find_if(openPopups.begin(), openPopups.end(), [&](const LivePopup& popup) {
        return popup.browser && popup.browser->number == number;
    });
    return found == openPopups.end() ? nullptr : &*found;
}

const ScreenControl* LiveScreen::findControl(std::string_view id) const {
    for (const ScreenPart& part : screen.parts()) {
        if (const ScreenControl* control = part.find(id)) {
            return control;
        }
    }
    for (const LivePopup& popup : openPopups) {
        if (const ScreenControl* control = findIn(popup.popup.controls, id)) {
            return control;
        }
    }
    for (auto toast = latestToasts.rbegin(); toast != latestToasts.rend(); ++toast) {
        if (const ScreenControl* control = findIn(toast->toast.controls, id)) {
            return control;
        }
    }
    return nullptr;
}

} // namespace host::serve
