/// The events of the plugin's machine, with what each carries.
///
/// Three sources raise them: the host through the plugin's operations, the backend through its callbacks,
/// and the machine itself. Requests carry the strings of the backend's request document, in its order; the
/// first is its version, for which callers pass `requestVersion`.
#pragma once

#include "common/api/DataplaneNotification.h"
#include "common/api/EnrollmentNotifications.h"
#include "common/api/StatusNotification.h"

#include <cstdint>
#include <memory>
#include <string>

class IPresentationCB;
class ITranslator;

/// The version of every request document that the plugin sends.
inline constexpr const char* requestVersion = "1";

// Raised by the host's calls.

struct Register_e {
    std::uintptr_t hostHandle = 0;
    IPresentationCB* presentationCB = nullptr;
    ITranslator* translator = nullptr;
};
struct Start_e {};
struct Stop_e {};
struct Unregister_e {};

// Raised by the backend's documents. A null record is possible, and told apart by the actions.

struct StatusNotification_e {
    std::shared_ptr<const StatusNotification_t> notification;
};
struct DataplaneNotification_e {
    std::shared_ptr<const DataplaneNotification_t> notification;
};
struct EnrollmentStatusNotification_e {
    EnrollmentStatusNotification_t notification;
};
struct EnrollmentAuthRequest_e {
    EnrollmentAuthRequest_t request;
};
struct UnenrollmentStatusNotification_e {
    UnenrollmentStatusNotification_t notification;
};

// Raised by what the user does.

struct InitiateEnrollment_e {
    std::string version;
    std::string enrollment_choice_id;
    std::string enrollment_context;
};
struct InitiateReEnrollment_e {
    std::string version;
    std::string enrollment_id;
    std::string enrollment_context;
};
struct InitiateUnenrollment_e {
    std::string version;
    std::string enrollment_id;
    std::string enrollment_context;
};
struct CancelEnrollment_e {
    std::string version;
    std::string enrollment_id;
};
struct EnrollmentAuthReply_e {
    std::string version;
    std::string enrollment_id;
    std::string enrollment_cookie;
};
struct PerformConfigSync_e {
    std::string version;
    std::string enrollment_id;
};
struct TriggerPostureReports_e {
    std::string version;
};
struct DataplaneAuthRequest_e {
    DataplaneAuthRequest_t request;
};
struct DataplaneAuthReply_e {
    std::string version;
    std::string context_id;
    std::string authorization_cookie;
};
struct CancelDataplaneAuth_e {};
struct DetailsButtonClicked_e {};
struct AlertDialogDismissed_e {};

// Raised by the machine itself: the first four on the root's queue, the last on the sub-machine's.

struct EnrollmentDone_e {};
struct UnenrollmentDone_e {};
struct AbortEnrollment_e {};
struct AbortUnenrollment_e {};
struct AlertListChanged_e {};
