#include "xml/XmlUINotice.h"

#include "common2/util/LocalTime.h"
#include "common2/util/LocalTimeText.h"
#include "xml/UiWireNames.h"

XmlUINotice::XmlUINotice(UiNoticeType noticeType, const char* tag, const char* module)
    : root(XmlDoc::addNode(wire::vtguiNotice))
    , type(noticeType) {
    root.setAttribute(wire::module, module)
        .setAttribute(wire::type, uiLiteral(type))
        .setAttribute(wire::tag, tag);
    if (type == UiNoticeType::Popup) {
        root = root.addChild(wire::popup);
    }
    setTimestamp(nullptr);
}

XmlNode XmlUINotice::addNode(const char* name) { return name ? root.addChild(name) : XmlNode(); }

bool XmlUINotice::parse(const char* text) {
    valid = false;
    if (!text) {
        return false;
    }
    // The former elements are about to go.
    controls.clear();
    root = XmlNode();
    if (!XmlDoc::parse(text)) {
        return false;
    }
    const XmlNode top = firstNode(wire::vtguiNotice);
    const char* typeText = top.findAttribute(wire::type);
    type = typeText ? uiNoticeTypeOf(typeText) : UiNoticeType::Unknown;
    if (type == UiNoticeType::Unknown) {
        return false;
    }
    const XmlNode popup = type == UiNoticeType::Popup ? top.firstChild(wire::popup) : XmlNode();
    root = popup.isNull() ? top : popup;
    indexControls(top);
    valid = true;
    return true;
}

void XmlUINotice::indexControls(const XmlNode& top) {
    for (XmlNode element = top; !element.isNull(); element = element.nextInTree(top)) {
        const char* id = element.findAttribute(wire::id);
        const XmlUICtrl control(element);
        if (control.getType() != UiCtrlType::None && id && *id) {
            controls.add(id, control);
        }
    }
}

void XmlUINotice::setTrayState(UiTrayState state) { root.setAttribute(wire::state, uiLiteral(state)); }

void XmlUINotice::setTimestamp(const char* text) {
    if (text) {
        root.setAttribute(wire::timestamp, text);
    } else {
        const std::int64_t present = common2::presentSeconds();
        common2::followTimeZone(present);
        root.setAttribute(wire::timestamp, common2::localTimeText(present, noticeTimeFormat).c_str());
    }
}

XmlUICtrl XmlUINotice::addCtrl(UiCtrlType controlType, const char* id) {
    return addCtrl(controlType, id, root);
}

XmlUICtrl XmlUINotice::addCtrl(UiCtrlType controlType, const char* id, XmlNode parent) {
    if (!id) {
        return {};
    }
    if (const XmlUICtrl* known = controls.find(id)) {
        return *known;
    }
    const char* name = uiLiteral(controlType);
    if (!name || parent.isNull()) {
        return {};
    }
    XmlUICtrl control(parent.addChild(name));
    control.setId(id);
    controls.add(control.findAttribute(wire::id), control);
    return control;
}
