#include "bench/Workload.h"

#include "common2/logging/LogCore.h"
#include "presentation-plugin/PresentationPluginSm.h"

namespace bench {
namespace {

/// A plugin that does nothing.
class SilentSlots final : public IPresentationPluginSmCallbacks {
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

/// Nobody logs while it lives.
struct Silence {
    Silence() {
        common2::installLogFilter([](const boost::log::attribute_value_set&) { return false; }, DBG_ERROR);
    }
    Silence(const Silence&) = delete;
    Silence& operator=(const Silence&) = delete;
    ~Silence() { common2::removeLogFilter(); }
};

/// One event after another to a machine whose five regions run.
template <class Event>
class MachineEvent final : public Workload {
public:
    MachineEvent() {
        machine.process_event(Register_e{});
        machine.process_event(Start_e{});
    }
    void step() override { machine.process_event(event); }

private:
    Silence silence;
    SilentSlots slots;
    PresentationPluginMachine machine{slots, quillSmlLogger()};
    Event event;
};

template <class Event>
WorkloadEntry entryOf(const char* name) {
    return {name, 1'000, [] { return std::make_unique<MachineEvent<Event>>(); }};
}

} // namespace

std::vector<WorkloadEntry> machineWorkloads() {
    return {entryOf<StatusNotification_e>("event-taken"), entryOf<PerformConfigSync_e>("event-taken-request"),
            entryOf<EnrollmentStatusNotification_e>("event-untaken"),
            entryOf<AlertDialogDismissed_e>("event-untaken-alert"),
            entryOf<Register_e>("event-untaken-root")};
}

} // namespace bench
