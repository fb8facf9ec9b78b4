/// What the host reports of a user's action.
#pragma once

#include "xml/ControlIndex.h"
#include "xml/XmlDoc.h"
#include "xml/XmlUICtrl.h"

#include <string>

/// A "vtguiEvent" document: the id of the event and the controls that ride along with it. It interprets
/// nothing. Belongs to the one host call that delivers it.
class XmlUIEvent : public XmlDoc {
public:
    /// Parses at once. A text that is no valid event leaves an event without id; nothing is thrown for it.
    explicit XmlUIEvent(const char* text);

    /// Takes another text in place of the first. Controls of the first are gone.
    /// @return whether the text is a valid event: XML with the right root and an id that is not empty
    bool parse(const char* text) override;

    /// The event id, empty if the text was no valid event.
    const std::string& getId() const noexcept { return id; }

    /// The element with that id, the last of them in document order; a null control if there is none, if `id`
    /// is null and if the event is not valid.
    XmlUICtrl getControl(const char* id) const;

private:
    void indexControls();

    XmlNode root;
    ControlIndex controls;
    std::string id;
    bool valid = false;
};
