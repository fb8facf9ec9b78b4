/// The two groups of the advanced window: enrollment with its "Unenroll" button, configuration sync with its
/// "Sync now" button.
#pragma once

#include "xml/XmlUINotice.h"

class CEventStore;

/// The enrollment group. An empty text leaves its control out; no text may be null.
struct AdvEnrollmentGroup {
    const char* title = "";
    const char* description = "";
    const char* buttonText = "";
    const char* managedText = "";
    bool buttonHidden = false;
    bool buttonDisabled = true;
    bool managedHidden = true;

    /// Texts are compared by address.
    bool operator==(const AdvEnrollmentGroup&) const = default;
};

/// The config sync group. An empty text leaves its control out; no text may be null.
struct AdvConfigSyncGroup {
    const char* title = "";
    const char* description = "";
    const char* lastSyncDescription = "";
    const char* lastSync = "";
    const char* buttonText = "";
    bool buttonHidden = false;
    bool buttonDisabled = true;

    /// As above.
    bool operator==(const AdvConfigSyncGroup&) const = default;
};

/// Fill a screen notice with a group. In a "setup" notice the button is bound and entered in `events`.
void composeAdvEnrollmentGroup(XmlUINotice& notice, const AdvEnrollmentGroup& group, CEventStore& events);
void composeAdvConfigSyncGroup(XmlUINotice& notice, const AdvConfigSyncGroup& group, CEventStore& events);

/// The groups as the first notices show them.
AdvEnrollmentGroup advEnrollmentSetup();
AdvConfigSyncGroup advConfigSyncSetup();

/// The enrollment group while an enrollment exists.
/// @param notAllowed whether the administrator keeps the user from ending it
AdvEnrollmentGroup advEnrollmentActive(bool notAllowed);
/// The enrollment group while none exists.
/// @param managed whether enrolling is up to the administrator
AdvEnrollmentGroup advEnrollmentInactive(bool managed);

/// The config sync group while a sync can be forced.
/// @param lastSync time of the last success as text; must live until the notice is composed
AdvConfigSyncGroup advConfigSyncActive(const char* lastSync);
/// The config sync group while it cannot.
AdvConfigSyncGroup advConfigSyncInactive();
