/// A machine's plugin that does nothing.
#pragma once

#include "presentation-plugin/IPresentationPluginSmCallbacks.h"

#include <cstdint>
#include <memory>

namespace test {

/// The action slots, all empty, and no alerts: for what is about the machine alone.
class IdleSlots final : public IPresentationPluginSmCallbacks {
public:
    bool alertListIsEmpty() const override { return true; }
    void actionRegisterCallbacks(std::uintptr_t, IPresentationCB*, ITranslator*) override {}
    void actionUnregisterCallbacks() override {}
    void actionStartApi() override {}
    void actionStopApi() override {}
    void actionInitUI() override {}
    void actionNotifyUIStopDone() override {}
    void actionApiInitiateEnrollment(const InitiateEnrollment_e&) override {}
    void actionApiInitiateReEnrollment(const InitiateReEnrollment_e&) override {}
    void actionApiEnrollmentAuthReply(const EnrollmentAuthReply_e&) override {}
    void actionApiCancelEnrollment(const CancelEnrollment_e&) override {}
    void actionApiDataplaneAuthReply(const DataplaneAuthReply_e&) override {}
    void actionApiInitiateUnenrollment(const InitiateUnenrollment_e&) override {}
    void actionApiPerformConfigSync(const PerformConfigSync_e&) override {}
    void actionApiTriggerPostureReports(const TriggerPostureReports_e&) override {}
    void actionDisplayApiErrorInternal() override {}
    void actionCacheStatusNotificationAndUpdateUI(std::shared_ptr<const StatusNotification_t>,
                                                  bool&) override {}
    void actionCacheDataplaneNotificationAndUpdateUI(std::shared_ptr<const DataplaneNotification_t>,
                                                     bool&) override {}
    void actionOnlyUpdateUI(bool&) override {}
    void actionOnlyCacheStatusNotification(std::shared_ptr<const StatusNotification_t>) override {}
    void actionOnlyCacheDataplaneNotification(std::shared_ptr<const DataplaneNotification_t>) override {}
    void actionDisplayEnrollmentStatusInternal(EnrollmentInternalStatus) override {}
    void actionDisplayEnrollmentStatus(const EnrollmentStatusNotification_t&) override {}
    void actionDisplayEnrollmentAuthRequest(const EnrollmentAuthRequest_t&) override {}
    void actionDisplayDataplaneAuthRequest(const DataplaneAuthRequest_t&) override {}
    void actionDismissDataplaneAuth() override {}
    void actionDisplayUnenrollmentStatusInternal(UnenrollmentInternalStatus) override {}
    void actionDisplayUnenrollmentStatus(const UnenrollmentStatusNotification_t&) override {}
    void actionDisplayAlertDialog(AlertDialogAction) override {}
    void actionDismissAlertDialog() override {}
};

} // namespace test
