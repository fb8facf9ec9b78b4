#include "xml/UiNoticeHelpers.h"

#include "xml/UiWireNames.h"

namespace {

constexpr const char* trayStateStringId = "tray_state_string";

} // namespace

void addLabel(XmlUINotice& notice, const char* id, const char* text, const char* tooltip, bool hidden,
              bool disabled, const char* color) {
    if (!id || !text || !color) {
        return;
    }
    notice.addCtrl(UiCtrlType::Label, id)
        .setAttribute(wire::value, text)
        .setAttribute(wire::tooltip, tooltip)
        .setAttribute(wire::color, color)
        .setAttribute(wire::hidden, wireBool(hidden || !*text))
        .setAttribute(wire::disabled, wireBool(disabled));
}

XmlUICtrl addButton(XmlUINotice& notice, const char* id, const char* label, bool hidden, bool disabled) {
    if (!id || !label) {
        return {};
    }
    XmlUICtrl button = notice.addCtrl(UiCtrlType::Button, id);
    button.setAttribute(wire::label, label)
        .setAttribute(wire::tooltip, label)
        .setAttribute(wire::hidden, wireBool(hidden))
        .setAttribute(wire::disabled, wireBool(disabled));
    return button;
}

void addMessageHistory(XmlUINotice& notice, const char* text) {
    if (text) {
        notice.addNode(wire::log).setAttribute(wire::messagehistory, text);
    }
}

void addTrayStateString(XmlUINotice& notice, const char* text) {
    if (text) {
        notice.addCtrl(UiCtrlType::TrayState, trayStateStringId).setAttribute(wire::value, text);
    }
}
