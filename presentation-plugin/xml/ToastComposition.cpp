#include "presentation-plugin/xml/ToastComposition.h"

#include "presentation-plugin/xml/CEventStore.h"
#include "xml/UiNoticeHelpers.h"
#include "xml/UiWireNames.h"

#include <array>

namespace {

struct ButtonOfToast {
    const char* id;
    const char* label;
    EventStoreId event;
};

/// Indexed by ToastButton, less its first value.
constexpr std::array<ButtonOfToast, 3> toastButtons{{
    {"quill_toast_enroll_action_btn", "Enroll", EventStoreId::ENROLL_TOAST_ACTION},
    {"quill_tile_verify_action_toast_btn", "Verify", EventStoreId::AUTH_VERIFY_TOAST_ACTION},
    {"quill_tile_details_action_toast_btn", "See Details", EventStoreId::ERROR_DETAILS_TOAST_ACTION},
}};
static_assert(toastButtons.size() == static_cast<std::size_t>(ToastButton::Details));

} // namespace

void composeToast(XmlUINotice& notice, const char* title, const char* text, ToastButton button,
                  CEventStore& events) {
    notice.getRoot()
        .setAttribute(wire::id, "wren_toast_popup")
        .setAttribute(wire::type, wire::notification)
        .setAttribute(wire::severity, wire::info);
    notice.addNode(wire::title).setAttribute(wire::value, title);
    notice.addNode(wire::text).setAttribute(wire::value, text);
    if (button == ToastButton::None) {
        return;
    }
    const ButtonOfToast& shown = toastButtons[static_cast<std::size_t>(button) - 1];
    XmlUICtrl control = addButton(notice, shown.id, shown.label, false, false);
    events.Add(control.setEvent(UiCtrlEvent::OnPress, nullptr), shown.event, nullptr);
}
