/// What the plugin wants on screen.
#pragma once

#include "xml/ControlIndex.h"
#include "xml/XmlDoc.h"
#include "xml/XmlUICtrl.h"

/// The form of a notice's "timestamp", as wcsftime takes it: the platform's own.
inline constexpr const wchar_t* noticeTimeFormat = L"%c";

/// A "vtguiNotice" document, built on the stack of whoever renders, sent and thrown away. Building it never
/// fails visibly: what is null drops out.
class XmlUINotice : public XmlDoc {
public:
    /// A notice with its root and, for a popup, the "popup" element below it that then takes everything else.
    /// @param tag value of "tag"; null leaves it out
    /// @param module value of "module"; null leaves it out
    XmlUINotice(UiNoticeType type, const char* tag, const char* module);

    /// Appends an element to the notice's root, in a popup to the "popup" element. A null name gives a null
    /// handle.
    XmlNode addNode(const char* name) override;

    /// Reads a notice from its text; the controls of the former content are gone.
    /// @return whether the text is a notice of a known type
    bool parse(const char* text) override;

    UiNoticeType getType() const noexcept { return type; }
    bool isValid() const noexcept { return valid; }
    /// The element that takes controls and notice-level attributes.
    XmlNode getRoot() const { return root; }

    /// Writes "state".
    void setTrayState(UiTrayState state);
    /// Writes "timestamp": the text, or for null the present local time in the platform's own form.
    void setTimestamp(const char* text);

    /// The control of that id: the one that the notice has, wherever it stands, or a new one at the end of
    /// the root. A null id, and a type that is no control, give a null control and change nothing.
    XmlUICtrl addCtrl(UiCtrlType controlType, const char* id);
    /// The same with a new control placed under `parent`, an element of this notice.
    XmlUICtrl addCtrl(UiCtrlType controlType, const char* id, XmlNode parent);

private:
    void indexControls(const XmlNode& top);

    XmlNode root;
    ControlIndex controls;
    UiNoticeType type;
    bool valid = true;
};
