/// Toasts: small notifications with at most one button, which the host retires by itself.
#pragma once

#include "xml/XmlUINotice.h"

class CEventStore;

enum class ToastButton { None, Enroll, Verify, Details };

/// Fills a popup notice with a toast; its button is bound and entered in `events`. Neither text may be null.
void composeToast(XmlUINotice& notice, const char* title, const char* text, ToastButton button,
                  CEventStore& events);
