#include "xml/XmlUIEvent.h"

#include "xml/UiWireNames.h"

XmlUIEvent::XmlUIEvent(const char* text) { XmlUIEvent::parse(text); }

bool XmlUIEvent::parse(const char* text) {
    valid = false;
    id.clear();
    // The elements of an earlier text are about to go.
    controls.clear();
    root = XmlNode();
    if (!XmlDoc::parse(text)) {
        return false;
    }
    root = firstNode(wire::vtguiEvent);
    id = root.getAttribute(wire::id);
    if (id.empty()) {
        return false;
    }
    indexControls();
    valid = true;
    return true;
}

void XmlUIEvent::indexControls() {
    for (XmlNode element = root; !element.isNull(); element = element.nextInTree(root)) {
        const char* elementId = element.findAttribute(wire::id);
        if (elementId && *elementId) {
            controls.add(elementId, XmlUICtrl(element));
        }
    }
}

XmlUICtrl XmlUIEvent::getControl(const char* controlId) const {
    const XmlUICtrl* control = valid && controlId ? controls.find(controlId) : nullptr;
    return control ? *control : XmlUICtrl();
}
