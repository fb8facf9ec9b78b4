#include "presentation-plugin/xml/TileComposition.h"

#include "common/PluginIdentity.h"
#include "presentation-plugin/xml/CEventStore.h"
#include "xml/UiNoticeHelpers.h"

#include <array>

namespace {

struct TileButton {
    const char* id;
    const char* label;
    EventStoreId event;
    ButtonState TileContent::*state;
};

constexpr std::array<TileButton, 4> tileButtons{{
    {"quill_tile_enroll_action_btn", "Enroll", EventStoreId::ENROLL_ACTION, &TileContent::enroll},
    {"quill_tile_cancel_action_btn", "Cancel", EventStoreId::ENROLL_CANCEL_ACTION, &TileContent::cancel},
    {"quill_tile_details_action_btn", "Details", EventStoreId::ERROR_DETAILS_ACTION, &TileContent::details},
    {"quill_tile_verify_action_btn", "Verify", EventStoreId::AUTH_VERIFY_ACTION, &TileContent::verify},
}};

constexpr const char* textColor = "black";

} // namespace

void composeTile(XmlUINotice& notice, const TileContent& content, bool tellHistory, CEventStore& events) {
    addLabel(notice, "simple_tile_label", pluginIdentity::label, "Navigate to WREN Advanced Window", false,
             false, textColor);
    addLabel(notice, "simple_status", content.status, "", false, false, textColor);
    if (tellHistory) {
        addMessageHistory(notice, content.status);
    }
    for (const TileButton& button : tileButtons) {
        const ButtonState state = content.*button.state;
        XmlUICtrl control = addButton(notice, button.id, button.label, state.hidden, state.disabled);
        if (notice.getType() == UiNoticeType::Setup) {
            events.Add(control.setEvent(UiCtrlEvent::OnPress, nullptr), button.event, nullptr);
        }
    }
    addTrayStateString(notice, content.trayText);
    notice.setTrayState(content.trayState);
}

bool hasVisibleText(const char* text) noexcept {
    // Not the C library's opinion, which follows the host's locale.
    return std::string_view(text).find_first_not_of(" \t\n\v\f\r") != std::string_view::npos;
}
