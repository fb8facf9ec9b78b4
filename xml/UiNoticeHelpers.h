/// The pieces that every screen is made of. What is null drops out, which is how optional rows vanish.
#pragma once

#include "xml/XmlUINotice.h"

/// Writes a label; nothing if `id`, `text` or `color` is null. A label without text is hidden, whatever
/// `hidden` says, so that it takes no room. A null tooltip is left out.
void addLabel(XmlUINotice& notice, const char* id, const char* text, const char* tooltip, bool hidden,
              bool disabled, const char* color);

/// Writes a button whose tooltip is its label. Nothing, and a null control, if `id` or `label` is null.
XmlUICtrl addButton(XmlUINotice& notice, const char* id, const char* label, bool hidden, bool disabled);

/// Adds a line to the host's message history; nothing for a null text.
void addMessageHistory(XmlUINotice& notice, const char* text);

/// Writes the text of the tray icon; nothing for a null text.
void addTrayStateString(XmlUINotice& notice, const char* text);
