/// The error popup: a modal dialog with a header, a line of details and a close button.
#pragma once

#include "xml/XmlUINotice.h"

class CEventStore;

/// Id of the one error popup.
inline constexpr const char* errorPopupId = "wren_client_error_dialog";

/// Fills a popup notice with the error popup; its controls are bound and entered in `events` under the
/// popup's id. Neither text may be null.
void composeErrorPopup(XmlUINotice& notice, const char* header, const char* details, CEventStore& events);

/// Fills a popup notice that takes a popup of that id off the screen.
void composePopupDisposal(XmlUINotice& notice, const char* popupId);
