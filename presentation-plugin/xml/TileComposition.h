/// The tile: the module's panel on the host's main window, with its tray icon.
#pragma once

#include "xml/XmlUINotice.h"

class CEventStore;

/// How one button of the tile stands. A button that is not offered is hidden and disabled.
struct ButtonState {
    bool hidden = true;
    bool disabled = true;

    bool operator==(const ButtonState&) const = default;
};

inline constexpr ButtonState offeredButton{false, false};

/// All that the tile shows. The texts must live until the notice is composed and must not be null.
struct TileContent {
    const char* status = "";   ///< the line in the tile
    const char* trayText = ""; ///< the tray icon's text
    UiTrayState trayState = UiTrayState::Transition;
    ButtonState enroll = {};
    ButtonState cancel = {};
    ButtonState details = {};
    ButtonState verify = {};

    /// Texts are compared by address.
    bool operator==(const TileContent&) const = default;
};

/// Fills a screen notice with the tile. In a "setup" notice the buttons are bound and entered in `events`.
/// @param tellHistory whether the status line also goes to the message history
void composeTile(XmlUINotice& notice, const TileContent& content, bool tellHistory, CEventStore& events);

/// Whether a text holds a character that is not white space: only such a text is worth a history line.
bool hasVisibleText(const char* text) noexcept;
