#include "presentation-plugin/xml/ErrorPopupComposition.h"

#include "common/PluginIdentity.h"
#include "presentation-plugin/xml/CEventStore.h"
#include "xml/UiVocabulary.h"
#include "xml/UiWireNames.h"

namespace {

void addTextRow(XmlUINotice& notice, XmlNode& layout, const char* id, const char* text) {
    notice.addCtrl(UiCtrlType::Label, id, layout.addChild(wire::row)).setAttribute(wire::value, text);
}

} // namespace

void composeErrorPopup(XmlUINotice& notice, const char* header, const char* details, CEventStore& events) {
    notice.getRoot().setAttribute(wire::id, errorPopupId).setAttribute(wire::type, wire::custom);
    notice.addNode(wire::title).setAttribute(wire::value, pluginIdentity::suite);

    XmlUICtrl corner = notice.addCtrl(UiCtrlType::CloseButton, "wren_client_error_gen_close_btn");
    events.Add(corner.setEvent(UiCtrlEvent::OnClose, nullptr), EventStoreId::ERROR_POPUP_CLOSE, errorPopupId);

    XmlNode layout = notice.addNode(wire::layout);
    addTextRow(notice, layout, "wren_client_error_message_header_label", header);
    addTextRow(notice, layout, "wren_client_error_message_details_label", details);

    XmlUICtrl button =
        notice.addCtrl(UiCtrlType::Button, "wren_client_error_close_btn", layout.addChild(wire::row));
    button.setAttribute(wire::label, "Close");
    events.Add(button.setEvent(UiCtrlEvent::OnPress, nullptr), EventStoreId::ERROR_POPUP_CLOSE, errorPopupId);
}

void composePopupDisposal(XmlUINotice& notice, const char* popupId) {
    notice.getRoot().setAttribute(wire::id, popupId).setAttribute(wire::dispose, wireBool(true));
}
