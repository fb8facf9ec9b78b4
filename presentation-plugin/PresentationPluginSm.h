/// The plugin's machine: what may happen when.
///
/// Contents: the guards; the action functors, one for each action, which log their name and call one slot of
/// `IPresentationPluginSmCallbacks`; the states; and the two transition tables. `Started_s` is a sub-machine
/// of five regions that run side by side: main, enroll, dataplane auth, unenroll, alert. Whoever changes what
/// the plugin does in some situation changes a row here.
#pragma once

#include "common/state_machine/QuillSmlLogger.h"
#include "common/state_machine/Sml.h"
#include "common2/logging/Common2Loggers.h"
#include "presentation-plugin/IPresentationPluginSmCallbacks.h"
#include "presentation-plugin/PresentationPluginSmEvents.h"

#include <queue>
#include <string_view>

namespace PresentationPluginSm {

/// Writes the record of an action: severity 0, this header as file, the functor's call operator as function.
/// @param action the functor's name
/// @param line the functor's line in this header
/// @param told the name that the message tells
void writeAction(std::string_view action, int line, std::string_view told);

inline void logAction(std::string_view action, int line, std::string_view told) {
    if (common2::logMayPass(DBG_TRACE)) {
        writeAction(action, line, told);
    }
}
inline void logAction(std::string_view action, int line) { logAction(action, line, action); }

} // namespace PresentationPluginSm

// Guards.

/// The backend reports the error state. A null record is no error.
struct statusIsError {
    bool operator()(const StatusNotification_e& event) const {
        return event.notification && event.notification->state == "error";
    }
};

template <EnrollmentStatus Expected>
struct enrollmentStatusIs {
    bool operator()(const EnrollmentStatusNotification_e& event) const {
        return event.notification.status == Expected;
    }
};

template <UnenrollmentStatus Expected>
struct unenrollmentStatusIs {
    bool operator()(const UnenrollmentStatusNotification_e& event) const {
        return event.notification.status == Expected;
    }
};

struct alertListIsEmpty {
    bool operator()(IPresentationPluginSmCallbacks& callbacks) const { return callbacks.alertListIsEmpty(); }
};

// Actions: the host's callbacks, the backend's life.

struct RegisterCallbacks_a {
    void operator()(const Register_e& event, IPresentationPluginSmCallbacks& callbacks) const {
        PresentationPluginSm::logAction("RegisterCallbacks_a", __LINE__);
        callbacks.actionRegisterCallbacks(event.hostHandle, event.presentationCB, event.translator);
    }
};
struct UnregisterCallbacks_a {
    void operator()(IPresentationPluginSmCallbacks& callbacks) const {
        PresentationPluginSm::logAction("UnregisterCallbacks_a", __LINE__);
        callbacks.actionUnregisterCallbacks();
    }
};
struct StartApi_a {
    void operator()(IPresentationPluginSmCallbacks& callbacks) const {
        PresentationPluginSm::logAction("StartApi_a", __LINE__);
        callbacks.actionStartApi();
    }
};
struct StopApi_a {
    void operator()(IPresentationPluginSmCallbacks& callbacks) const {
        PresentationPluginSm::logAction("StopApi_a", __LINE__);
        callbacks.actionStopApi();
    }
};
struct InitUI_a {
    void operator()(IPresentationPluginSmCallbacks& callbacks) const {
        PresentationPluginSm::logAction("InitUI_a", __LINE__);
        callbacks.actionInitUI();
    }
};
struct NotifyUIStopDone_a {
    void operator()(IPresentationPluginSmCallbacks& callbacks) const {
        PresentationPluginSm::logAction("NotifyUIStopDone_a", __LINE__);
        callbacks.actionNotifyUIStopDone();
    }
};

// Requests to the backend.

struct ApiInitiateEnrollment_a {
    void operator()(const InitiateEnrollment_e& event, IPresentationPluginSmCallbacks& callbacks) const {
        PresentationPluginSm::logAction("ApiInitiateEnrollment_a", __LINE__);
        callbacks.actionApiInitiateEnrollment(event);
    }
};
struct ApiInitiateReEnrollment_a {
    void operator()(const InitiateReEnrollment_e& event, IPresentationPluginSmCallbacks& callbacks) const {
        PresentationPluginSm::logAction("ApiInitiateReEnrollment_a", __LINE__);
        callbacks.actionApiInitiateReEnrollment(event);
    }
};
struct ApiEnrollmentAuthReply_a {
    void operator()(const EnrollmentAuthReply_e& event, IPresentationPluginSmCallbacks& callbacks) const {
        PresentationPluginSm::logAction("ApiEnrollmentAuthReply_a", __LINE__);
        callbacks.actionApiEnrollmentAuthReply(event);
    }
};
struct ApiCancelEnrollment_a {
    void operator()(const CancelEnrollment_e& event, IPresentationPluginSmCallbacks& callbacks) const {
        PresentationPluginSm::logAction("ApiCancelEnrollment_a", __LINE__);
        callbacks.actionApiCancelEnrollment(event);
    }
};
struct DataplaneAuthReply_a {
    void operator()(const DataplaneAuthReply_e& event, IPresentationPluginSmCallbacks& callbacks) const {
        PresentationPluginSm::logAction("DataplaneAuthReply_a", __LINE__);
        callbacks.actionApiDataplaneAuthReply(event);
    }
};
struct ApiInitiateUnenrollment_a {
    void operator()(const InitiateUnenrollment_e& event, IPresentationPluginSmCallbacks& callbacks) const {
        PresentationPluginSm::logAction("ApiInitiateUnenrollment_a", __LINE__);
        callbacks.actionApiInitiateUnenrollment(event);
    }
};
struct ApiPerformConfigSync_a {
    void operator()(const PerformConfigSync_e& event, IPresentationPluginSmCallbacks& callbacks) const {
        PresentationPluginSm::logAction("ApiPerformConfigSync_a", __LINE__);
        callbacks.actionApiPerformConfigSync(event);
    }
};
struct ApiTriggerPostureReports_a {
    void operator()(const TriggerPostureReports_e& event, IPresentationPluginSmCallbacks& callbacks) const {
        PresentationPluginSm::logAction("ApiTriggerPostureReports_a", __LINE__);
        callbacks.actionApiTriggerPostureReports(event);
    }
};

// At root level the alert region does not run: the process handle is there for the common shape only.

struct DisplayApiErrorInternal_a {
    void operator()(IPresentationPluginSmCallbacks& callbacks, sml::back::process<AlertListChanged_e>) const {
        PresentationPluginSm::logAction("DisplayApiErrorInternal_a", __LINE__);
        callbacks.actionDisplayApiErrorInternal();
    }
};

// Caching and rendering. A rendering that finds the alert list changed lets the alert region know.

struct CacheStatusNotificationAndUpdateUI_a {
    void operator()(const StatusNotification_e& event, IPresentationPluginSmCallbacks& callbacks,
                    sml::back::process<AlertListChanged_e> raise) const {
        PresentationPluginSm::logAction("CacheStatusNotificationAndUpdateUI_a", __LINE__);
        bool alertsPending = false;
        callbacks.actionCacheStatusNotificationAndUpdateUI(event.notification, alertsPending);
        if (alertsPending) {
            raise(AlertListChanged_e{});
        }
    }
};
struct CacheDataplaneNotificationAndUpdateUI_a {
    void operator()(const DataplaneNotification_e& event, IPresentationPluginSmCallbacks& callbacks,
                    sml::back::process<AlertListChanged_e> raise) const {
        PresentationPluginSm::logAction("CacheDataplaneNotificationAndUpdateUI_a", __LINE__);
        bool alertsPending = false;
        callbacks.actionCacheDataplaneNotificationAndUpdateUI(event.notification, alertsPending);
        if (alertsPending) {
            raise(AlertListChanged_e{});
        }
    }
};
struct OnlyUpdateUI_a {
    void operator()(IPresentationPluginSmCallbacks& callbacks,
                    sml::back::process<AlertListChanged_e> raise) const {
        PresentationPluginSm::logAction("OnlyUpdateUI_a", __LINE__);
        bool alertsPending = false;
        callbacks.actionOnlyUpdateUI(alertsPending);
        if (alertsPending) {
            raise(AlertListChanged_e{});
        }
    }
};
struct OnlyCacheStatusNotification_a {
    void operator()(const StatusNotification_e& event, IPresentationPluginSmCallbacks& callbacks) const {
        PresentationPluginSm::logAction("OnlyCacheStatusNotification_a", __LINE__);
        callbacks.actionOnlyCacheStatusNotification(event.notification);
    }
};
struct OnlyCacheDataplaneNotification_a {
    void operator()(const DataplaneNotification_e& event, IPresentationPluginSmCallbacks& callbacks) const {
        PresentationPluginSm::logAction("OnlyCacheDataplaneNotification_a", __LINE__);
        callbacks.actionOnlyCacheDataplaneNotification(event.notification);
    }
};

// Progress on screen.

struct DisplayEnrollmentStatusInitiating_a {
    void operator()(IPresentationPluginSmCallbacks& callbacks) const {
        PresentationPluginSm::logAction("DisplayEnrollmentStatusInitiating_a", __LINE__);
        callbacks.actionDisplayEnrollmentStatusInternal(EnrollmentInternalStatus::Initiating);
    }
};
struct DisplayEnrollmentStatusCancelling_a {
    void operator()(IPresentationPluginSmCallbacks& callbacks) const {
        PresentationPluginSm::logAction("DisplayEnrollmentStatusCancelling_a", __LINE__);
        callbacks.actionDisplayEnrollmentStatusInternal(EnrollmentInternalStatus::Cancelling);
    }
};
struct DisplayEnrollmentStatusAuthDone_a {
    void operator()(IPresentationPluginSmCallbacks& callbacks) const {
        PresentationPluginSm::logAction("DisplayEnrollmentStatusAuthDone_a", __LINE__);
        callbacks.actionDisplayEnrollmentStatusInternal(EnrollmentInternalStatus::AuthDone);
    }
};
struct DisplayEnrollmentAborted_a {
    void operator()(IPresentationPluginSmCallbacks& callbacks) const {
        PresentationPluginSm::logAction("DisplayEnrollmentAborted_a", __LINE__);
        callbacks.actionDisplayEnrollmentStatusInternal(EnrollmentInternalStatus::Aborted);
    }
};
struct DisplayEnrollmentStatus_a {
    void operator()(const EnrollmentStatusNotification_e& event,
                    IPresentationPluginSmCallbacks& callbacks) const {
        PresentationPluginSm::logAction("DisplayEnrollmentStatus_a", __LINE__);
        callbacks.actionDisplayEnrollmentStatus(event.notification);
    }
};
struct DisplayEnrollmentAuthRequest_a {
    void operator()(const EnrollmentAuthRequest_e& event, IPresentationPluginSmCallbacks& callbacks) const {
        PresentationPluginSm::logAction("DisplayEnrollmentAuthRequest_a", __LINE__);
        callbacks.actionDisplayEnrollmentAuthRequest(event.request);
    }
};
struct DisplayDataplaneAuthRequest_a {
    void operator()(const DataplaneAuthRequest_e& event, IPresentationPluginSmCallbacks& callbacks) const {
        PresentationPluginSm::logAction("DisplayDataplaneAuthRequest_a", __LINE__);
        callbacks.actionDisplayDataplaneAuthRequest(event.request);
    }
};
struct DismissDataplaneAuth_a {
    void operator()(IPresentationPluginSmCallbacks& callbacks) const {
        PresentationPluginSm::logAction("DismissDataplaneAuth_a", __LINE__);
        callbacks.actionDismissDataplaneAuth();
    }
};
struct DisplayUnenrollmentStatusInitiating_a {
    void operator()(IPresentationPluginSmCallbacks& callbacks) const {
        PresentationPluginSm::logAction("DisplayUnenrollmentStatusInitiating_a", __LINE__);
        callbacks.actionDisplayUnenrollmentStatusInternal(UnenrollmentInternalStatus::Initiating);
    }
};
struct DisplayUnenrollmentAborted_a {
    void operator()(IPresentationPluginSmCallbacks& callbacks) const {
        PresentationPluginSm::logAction("DisplayUnenrollmentAborted_a", __LINE__);
        callbacks.actionDisplayUnenrollmentStatusInternal(UnenrollmentInternalStatus::Aborted);
    }
};
struct DisplayUnenrollmentStatus_a {
    void operator()(const UnenrollmentStatusNotification_e& event,
                    IPresentationPluginSmCallbacks& callbacks) const {
        PresentationPluginSm::logAction("DisplayUnenrollmentStatus_a", __LINE__);
        callbacks.actionDisplayUnenrollmentStatus(event.notification);
    }
};
struct DisplayAlertDialog_a {
    void operator()(IPresentationPluginSmCallbacks& callbacks) const {
        PresentationPluginSm::logAction("DisplayAlertDialog_a", __LINE__);
        callbacks.actionDisplayAlertDialog(AlertDialogAction::Display);
    }
};
struct BringAlertDialogToForeground_a {
    void operator()(IPresentationPluginSmCallbacks& callbacks) const {
        PresentationPluginSm::logAction("BringAlertDialogToForeground_a", __LINE__);
        callbacks.actionDisplayAlertDialog(AlertDialogAction::BringToForeground);
    }
};
/// Support tooling knows this action by its garbled name, so the message keeps it.
struct UpdateAlertDialog_a {
    void operator()(IPresentationPluginSmCallbacks& callbacks) const {
        PresentationPluginSm::logAction("UpdateAlertDialog_a", __LINE__,
                                        "UpdatUpdateAlertDialog_aeGlobalErrorDialog_a");
        callbacks.actionDisplayAlertDialog(AlertDialogAction::Update);
    }
};
struct DismissAlertDialog_a {
    void operator()(IPresentationPluginSmCallbacks& callbacks) const {
        PresentationPluginSm::logAction("DismissAlertDialog_a", __LINE__);
        callbacks.actionDismissAlertDialog();
    }
};

// States. They exist by name only.

class Unregistered_s;
class Registered_s;
class Starting_s;

class MainActive_s;
class MainEnrolling_s;
class MainUnenrolling_s;

class EnrollIdle_s;
class EnrollRequestPending_s;
class EnrollStarted_s;
class EnrollAuthenticating_s;
class EnrollCancelPending_s;
class EnrollProgress_s;

class DataplaneAuthIdle_s;
class DataplaneAuthenticating_s;

class UnenrollIdle_s;
class UnenrollRequestPending_s;
class UnenrollStarted_s;

class AlertIdle_s;
class AlertShowingDialog_s;

/// The running plugin: five regions, each beginning anew at every start.
struct Started_s {
    auto operator()() const {
        using namespace sml;
        constexpr enrollmentStatusIs<EnrollmentStatus::Error> enrollError;
        constexpr enrollmentStatusIs<EnrollmentStatus::Started> enrollStarted;
        constexpr enrollmentStatusIs<EnrollmentStatus::Complete> enrollComplete;
        constexpr unenrollmentStatusIs<UnenrollmentStatus::Started> unenrollStarted;
        constexpr unenrollmentStatusIs<UnenrollmentStatus::Complete> unenrollComplete;

        // clang-format off
        return make_transition_table(
            // main
            *state<MainActive_s>              + event<StatusNotification_e>                               / CacheStatusNotificationAndUpdateUI_a{},
             state<MainActive_s>              + event<DataplaneNotification_e>                            / CacheDataplaneNotificationAndUpdateUI_a{},
             state<MainActive_s>              + event<InitiateEnrollment_e>                                                                                                         = state<MainEnrolling_s>,
             state<MainActive_s>              + event<InitiateReEnrollment_e>                                                                                                       = state<MainEnrolling_s>,
             state<MainActive_s>              + event<InitiateUnenrollment_e>                                                                                                       = state<MainUnenrolling_s>,
             state<MainActive_s>              + event<PerformConfigSync_e>                                / ApiPerformConfigSync_a{},
             state<MainActive_s>              + event<TriggerPostureReports_e>                            / ApiTriggerPostureReports_a{},
             state<MainEnrolling_s>           + event<StatusNotification_e>           [statusIsError{}]   / (CacheStatusNotificationAndUpdateUI_a{}, process(AbortEnrollment_e{}))   = state<MainActive_s>,
             state<MainEnrolling_s>           + event<StatusNotification_e>           [!statusIsError{}]  / OnlyCacheStatusNotification_a{},
             state<MainEnrolling_s>           + event<DataplaneNotification_e>                            / OnlyCacheDataplaneNotification_a{},
             state<MainEnrolling_s>           + event<EnrollmentDone_e>                                   / OnlyUpdateUI_a{}                                                        = state<MainActive_s>,
             state<MainUnenrolling_s>         + event<StatusNotification_e>           [statusIsError{}]   / (CacheStatusNotificationAndUpdateUI_a{}, process(AbortUnenrollment_e{})) = state<MainActive_s>,
             state<MainUnenrolling_s>         + event<StatusNotification_e>           [!statusIsError{}]  / OnlyCacheStatusNotification_a{},
             state<MainUnenrolling_s>         + event<DataplaneNotification_e>                            / OnlyCacheDataplaneNotification_a{},
             state<MainUnenrolling_s>         + event<UnenrollmentDone_e>                                 / OnlyUpdateUI_a{}                                                        = state<MainActive_s>,

            // enroll
            *state<EnrollIdle_s>              + event<InitiateEnrollment_e>                               / (DisplayEnrollmentStatusInitiating_a{}, ApiInitiateEnrollment_a{})       = state<EnrollRequestPending_s>,
             state<EnrollIdle_s>              + event<InitiateReEnrollment_e>                             / (DisplayEnrollmentStatusInitiating_a{}, ApiInitiateReEnrollment_a{})     = state<EnrollRequestPending_s>,
             state<EnrollRequestPending_s>    + event<EnrollmentStatusNotification_e> [enrollStarted]     / DisplayEnrollmentStatus_a{}                                             = state<EnrollStarted_s>,
             state<EnrollRequestPending_s>    + event<EnrollmentStatusNotification_e> [enrollError]       / (DisplayEnrollmentStatus_a{}, process(EnrollmentDone_e{}))               = state<EnrollIdle_s>,
             state<EnrollRequestPending_s>    + event<AbortEnrollment_e>                                  / DisplayEnrollmentAborted_a{}                                            = state<EnrollIdle_s>,
             state<EnrollStarted_s>           + event<EnrollmentAuthRequest_e>                            / DisplayEnrollmentAuthRequest_a{}                                        = state<EnrollAuthenticating_s>,
             state<EnrollStarted_s>           + event<EnrollmentStatusNotification_e> [!enrollStarted]    / (DisplayEnrollmentStatus_a{}, process(EnrollmentDone_e{}))               = state<EnrollIdle_s>,
             state<EnrollStarted_s>           + event<CancelEnrollment_e>                                 / (DisplayEnrollmentStatusCancelling_a{}, ApiCancelEnrollment_a{})         = state<EnrollCancelPending_s>,
             state<EnrollStarted_s>           + event<AbortEnrollment_e>                                  / DisplayEnrollmentAborted_a{}                                            = state<EnrollIdle_s>,
             state<EnrollAuthenticating_s>    + event<EnrollmentAuthReply_e>                              / (DisplayEnrollmentStatusAuthDone_a{}, ApiEnrollmentAuthReply_a{})        = state<EnrollProgress_s>,
             state<EnrollAuthenticating_s>    + event<EnrollmentStatusNotification_e> [!enrollStarted]    / (DisplayEnrollmentStatus_a{}, process(EnrollmentDone_e{}))               = state<EnrollIdle_s>,
             state<EnrollAuthenticating_s>    + event<CancelEnrollment_e>                                 / (DisplayEnrollmentStatusCancelling_a{}, ApiCancelEnrollment_a{})         = state<EnrollCancelPending_s>,
             state<EnrollAuthenticating_s>    + event<AbortEnrollment_e>                                  / DisplayEnrollmentAborted_a{}                                            = state<EnrollIdle_s>,
             state<EnrollCancelPending_s>     + event<EnrollmentStatusNotification_e> [!enrollStarted]    / (DisplayEnrollmentStatus_a{}, process(EnrollmentDone_e{}))               = state<EnrollIdle_s>,
             state<EnrollCancelPending_s>     + event<AbortEnrollment_e>                                  / DisplayEnrollmentAborted_a{}                                            = state<EnrollIdle_s>,
             state<EnrollProgress_s>          + event<EnrollmentStatusNotification_e> [enrollComplete]    / (DisplayEnrollmentStatus_a{}, process(EnrollmentDone_e{}))               = state<EnrollIdle_s>,
             state<EnrollProgress_s>          + event<CancelEnrollment_e>                                 / (DisplayEnrollmentStatusCancelling_a{}, ApiCancelEnrollment_a{})         = state<EnrollCancelPending_s>,
             state<EnrollProgress_s>          + event<AbortEnrollment_e>                                  / DisplayEnrollmentAborted_a{}                                            = state<EnrollIdle_s>,

            // dataplane auth
            *state<DataplaneAuthIdle_s>       + event<DataplaneAuthRequest_e>                             / DisplayDataplaneAuthRequest_a{}                                         = state<DataplaneAuthenticating_s>,
             state<DataplaneAuthenticating_s> + event<DataplaneAuthRequest_e>                             / DisplayDataplaneAuthRequest_a{},
             state<DataplaneAuthenticating_s> + event<DataplaneAuthReply_e>                               / (DismissDataplaneAuth_a{}, DataplaneAuthReply_a{})                       = state<DataplaneAuthIdle_s>,
             state<DataplaneAuthenticating_s> + event<CancelDataplaneAuth_e>                              / DismissDataplaneAuth_a{}                                                = state<DataplaneAuthIdle_s>,

            // unenroll
            *state<UnenrollIdle_s>            + event<InitiateUnenrollment_e>                             / (DisplayUnenrollmentStatusInitiating_a{}, ApiInitiateUnenrollment_a{})   = state<UnenrollRequestPending_s>,
             state<UnenrollRequestPending_s>  + event<UnenrollmentStatusNotification_e> [unenrollStarted] / DisplayUnenrollmentStatus_a{}                                           = state<UnenrollStarted_s>,
             state<UnenrollRequestPending_s>  + event<AbortUnenrollment_e>                                / DisplayUnenrollmentAborted_a{}                                          = state<UnenrollIdle_s>,
             state<UnenrollStarted_s>         + event<UnenrollmentStatusNotification_e> [unenrollComplete] / (DisplayUnenrollmentStatus_a{}, process(UnenrollmentDone_e{}))          = state<UnenrollIdle_s>,
             state<UnenrollStarted_s>         + event<AbortUnenrollment_e>                                / DisplayUnenrollmentAborted_a{}                                          = state<UnenrollIdle_s>,

            // alert; the row without action makes a change of alerts count as taken while no dialog is open
            *state<AlertIdle_s>               + event<DetailsButtonClicked_e>                             / DisplayAlertDialog_a{}                                                  = state<AlertShowingDialog_s>,
             state<AlertIdle_s>               + event<AlertListChanged_e>                                 / []{},
             state<AlertShowingDialog_s>      + event<DetailsButtonClicked_e>                             / BringAlertDialogToForeground_a{},
             state<AlertShowingDialog_s>      + event<AlertListChanged_e>             [alertListIsEmpty{}]  / DismissAlertDialog_a{}                                                = state<AlertIdle_s>,
             state<AlertShowingDialog_s>      + event<AlertListChanged_e>             [!alertListIsEmpty{}] / UpdateAlertDialog_a{},
             state<AlertShowingDialog_s>      + event<AlertDialogDismissed_e>                             / DismissAlertDialog_a{}                                                  = state<AlertIdle_s>
        );
        // clang-format on
    }
};

/// The root: the plugin's lifecycle.
struct PresentationPlugin_s {
    auto operator()() const {
        using namespace sml;
        // clang-format off
        return make_transition_table(
            *state<Unregistered_s> + event<Register_e>      / RegisterCallbacks_a{}                  = state<Registered_s>,
             state<Registered_s>   + event<Start_e>         / (InitUI_a{}, StartApi_a{})             = state<Starting_s>,
             state<Registered_s>   + event<Unregister_e>    / UnregisterCallbacks_a{}                = state<Unregistered_s>,
             state<Starting_s>                                                                       = state<Started_s>,
             state<Starting_s>     + exception<ApiError_ex> / DisplayApiErrorInternal_a{}            = state<Registered_s>,
             state<Started_s>      + event<Stop_e>          / (StopApi_a{}, NotifyUIStopDone_a{})    = state<Registered_s>
        );
        // clang-format on
    }
};

/// The machine as the plugin holds it.
using PresentationPluginMachine =
    sml::sm<PresentationPlugin_s, sml::logger<QuillSmlLogger_t>, sml::process_queue<std::queue>>;
