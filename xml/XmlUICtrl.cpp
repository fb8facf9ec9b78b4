#include "xml/XmlUICtrl.h"

#include "xml/UiWireNames.h"

XmlUICtrl::XmlUICtrl(const XmlNode& element)
    : XmlNode(element)
    , type(uiCtrlTypeOf(getName())) {}

XmlUICtrl& XmlUICtrl::setId(const char* id) {
    setAttribute(wire::id, id);
    return *this;
}

std::string XmlUICtrl::setEvent(UiCtrlEvent event, const char* parameter) {
    const UiEventAttributes attributes = uiEventAttributes(event);
    if (isNull() || !attributes.event) {
        return {};
    }
    std::string eventId;
    if (const char* bound = findAttribute(attributes.event)) {
        eventId = bound;
    } else {
        eventId = getAttribute(wire::id) + '_' + attributes.event;
        setAttribute(attributes.event, eventId.c_str());
    }
    if (parameter) {
        setAttribute(attributes.parameter, parameter);
    } else {
        removeAttribute(attributes.parameter);
    }
    return eventId;
}

std::string XmlUICtrl::getEvent(UiCtrlEvent event) const {
    return getAttribute(uiEventAttributes(event).event);
}
