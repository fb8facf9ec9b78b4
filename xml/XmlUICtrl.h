/// One addressable control of a notice or an event.
#pragma once

#include "xml/UiVocabulary.h"
#include "xml/XmlNode.h"

#include <string>

/// A handle on an element that is a control. As with every handle, a null control tolerates every operation.
class XmlUICtrl : public XmlNode {
public:
    /// A null control.
    XmlUICtrl() = default;
    /// The element as a control; its type follows from the element's name.
    explicit XmlUICtrl(const XmlNode& element);

    /// `UiCtrlType::None` where the element is not a control.
    UiCtrlType getType() const noexcept { return type; }

    /// Writes the id that names the control for the life of the host's screen.
    XmlUICtrl& setId(const char* id);

    /// Binds an event: writes its attribute, unless the control has it already, with the event id, which is
    /// the control's id, "_" and the attribute's name.
    /// @param parameter value of the event's parameter attribute; null removes that attribute
    /// @return the event id; empty for a null control and for a value that is no event
    std::string setEvent(UiCtrlEvent event, const char* parameter);
    /// The event id, empty if the event is not bound.
    std::string getEvent(UiCtrlEvent event) const;

private:
    UiCtrlType type = UiCtrlType::None;
};
