/// What the machine can make the plugin do: one slot for each kind of action.
#pragma once

#include "presentation-plugin/PresentationPluginSmEvents.h"

#include <memory>
#include <stdexcept>

/// A backend call failed. The program's one exception type of its own; the reason is in the log, and the
/// message says which call it was.
class ApiError_ex : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// What to do with the alert dialog.
enum class AlertDialogAction { Display = 0, BringToForeground = 1, Update = 2 };

/// The machine's only view of the plugin. The machine calls every slot on the thread that raised the event,
/// under the plugin's mutex; a slot that raises an event itself must leave that to the machine's queues. The
/// order of the slots is fixed. A slot may throw `ApiError_ex`, which the machine takes while it starts.
class IPresentationPluginSmCallbacks {
public:
    /// Guard of the alert region: whether there is no alert.
    virtual bool alertListIsEmpty() const = 0;

    virtual void actionRegisterCallbacks(std::uintptr_t hostHandle, IPresentationCB* presentationCB,
                                         ITranslator* translator) = 0;
    virtual void actionUnregisterCallbacks() = 0;
    virtual void actionStartApi() = 0;
    virtual void actionStopApi() = 0;
    virtual void actionInitUI() = 0;
    virtual void actionNotifyUIStopDone() = 0;

    virtual void actionApiInitiateEnrollment(const InitiateEnrollment_e& request) = 0;
    virtual void actionApiInitiateReEnrollment(const InitiateReEnrollment_e& request) = 0;
    virtual void actionApiEnrollmentAuthReply(const EnrollmentAuthReply_e& request) = 0;
    virtual void actionApiCancelEnrollment(const CancelEnrollment_e& request) = 0;
    virtual void actionApiDataplaneAuthReply(const DataplaneAuthReply_e& request) = 0;
    virtual void actionApiInitiateUnenrollment(const InitiateUnenrollment_e& request) = 0;
    virtual void actionApiPerformConfigSync(const PerformConfigSync_e& request) = 0;
    virtual void actionApiTriggerPostureReports(const TriggerPostureReports_e& request) = 0;
    virtual void actionDisplayApiErrorInternal() = 0;

    /// The three that render set `alertsPending` to true where the alert list changed.
    virtual void
    actionCacheStatusNotificationAndUpdateUI(std::shared_ptr<const StatusNotification_t> notification,
                                             bool& alertsPending) = 0;
    virtual void
    actionCacheDataplaneNotificationAndUpdateUI(std::shared_ptr<const DataplaneNotification_t> notification,
                                                bool& alertsPending) = 0;
    virtual void actionOnlyUpdateUI(bool& alertsPending) = 0;
    virtual void
    actionOnlyCacheStatusNotification(std::shared_ptr<const StatusNotification_t> notification) = 0;
    virtual void
    actionOnlyCacheDataplaneNotification(std::shared_ptr<const DataplaneNotification_t> notification) = 0;

    virtual void actionDisplayEnrollmentStatusInternal(EnrollmentInternalStatus status) = 0;
    virtual void actionDisplayEnrollmentStatus(const EnrollmentStatusNotification_t& notification) = 0;
    virtual void actionDisplayEnrollmentAuthRequest(const EnrollmentAuthRequest_t& request) = 0;
    virtual void actionDisplayDataplaneAuthRequest(const DataplaneAuthRequest_t& request) = 0;
    virtual void actionDismissDataplaneAuth() = 0;
    virtual void actionDisplayUnenrollmentStatusInternal(UnenrollmentInternalStatus status) = 0;
    virtual void actionDisplayUnenrollmentStatus(const UnenrollmentStatusNotification_t& notification) = 0;
    virtual void actionDisplayAlertDialog(AlertDialogAction action) = 0;
    virtual void actionDismissAlertDialog() = 0;

    virtual ~IPresentationPluginSmCallbacks() = default;
};
