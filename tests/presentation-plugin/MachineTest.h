/// The machine alone, driven with events and watched through its trace and a plugin that only takes notes.
#pragma once

#include "presentation-plugin/PresentationPluginSm.h"

#include "tests/support/LogCapture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>
#include <ostream>
#include <set>
#include <string>
#include <vector>

namespace machine_test {

using Lines = std::vector<std::string>;

/// Notes each slot that is called, with what it was passed.
class NotingPlugin : public IPresentationPluginSmCallbacks {
public:
    Lines calls;
    std::set<std::string> apiErrors;   ///< slots that throw ApiError_ex
    std::set<std::string> otherErrors; ///< slots that throw something else
    bool alertsChange = false;         ///< what the rendering slots report
    bool noAlerts = true;

    bool alertListIsEmpty() const override { return noAlerts; }
    void actionRegisterCallbacks(std::uintptr_t handle, IPresentationCB* callback,
                                 ITranslator* translator) override {
        note("registerCallbacks",
             std::to_string(handle) + (callback ? " callback" : "") + (translator ? " translator" : ""));
    }
    void actionUnregisterCallbacks() override { note("unregisterCallbacks"); }
    void actionStartApi() override { note("startApi"); }
    void actionStopApi() override { note("stopApi"); }
    void actionInitUI() override { note("initUI"); }
    void actionNotifyUIStopDone() override { note("notifyUIStopDone"); }
    void actionApiInitiateEnrollment(const InitiateEnrollment_e& request) override {
        note("apiInitiateEnrollment", request.enrollment_choice_id);
    }
    void actionApiInitiateReEnrollment(const InitiateReEnrollment_e& request) override {
        note("apiInitiateReEnrollment", request.enrollment_id);
    }
    void actionApiEnrollmentAuthReply(const EnrollmentAuthReply_e& request) override {
        note("apiEnrollmentAuthReply", request.enrollment_cookie);
    }
    void actionApiCancelEnrollment(const CancelEnrollment_e& request) override {
        note("apiCancelEnrollment", request.enrollment_id);
    }
    void actionApiDataplaneAuthReply(const DataplaneAuthReply_e& request) override {
        note("apiDataplaneAuthReply", request.context_id);
    }
    void actionApiInitiateUnenrollment(const InitiateUnenrollment_e& request) override {
        note("apiInitiateUnenrollment", request.enrollment_id);
    }
    void actionApiPerformConfigSync(const PerformConfigSync_e& request) override {
        note("apiPerformConfigSync", request.enrollment_id);
    }
    void actionApiTriggerPostureReports(const TriggerPostureReports_e& request) override {
        note("apiTriggerPostureReports", request.version);
    }
    void actionDisplayApiErrorInternal() override { note("displayApiErrorInternal"); }
    void actionCacheStatusNotificationAndUpdateUI(std::shared_ptr<const StatusNotification_t> notification,
                                                  bool& alertsPending) override {
        note("cacheStatusAndUpdateUI", notification ? notification->state : "null");
        alertsPending = alertsChange;
    }
    void
    actionCacheDataplaneNotificationAndUpdateUI(std::shared_ptr<const DataplaneNotification_t> notification,
                                                bool& alertsPending) override {
        note("cacheDataplaneAndUpdateUI", notification ? notification->version : "null");
        alertsPending = alertsChange;
    }
    void actionOnlyUpdateUI(bool& alertsPending) override {
        note("onlyUpdateUI");
        alertsPending = alertsChange;
    }
    void
    actionOnlyCacheStatusNotification(std::shared_ptr<const StatusNotification_t> notification) override {
        note("onlyCacheStatus", notification ? notification->state : "null");
    }
    void actionOnlyCacheDataplaneNotification(
        std::shared_ptr<const DataplaneNotification_t> notification) override {
        note("onlyCacheDataplane", notification ? notification->version : "null");
    }
    void actionDisplayEnrollmentStatusInternal(EnrollmentInternalStatus status) override {
        note("displayEnrollmentStatusInternal", std::string(nameOf(status)));
    }
    void actionDisplayEnrollmentStatus(const EnrollmentStatusNotification_t& notification) override {
        note("displayEnrollmentStatus", std::string(nameOf(notification.status)));
    }
    void actionDisplayEnrollmentAuthRequest(const EnrollmentAuthRequest_t& request) override {
        note("displayEnrollmentAuthRequest", request.start_url);
    }
    void actionDisplayDataplaneAuthRequest(const DataplaneAuthRequest_t& request) override {
        note("displayDataplaneAuthRequest", request.context_id);
    }
    void actionDismissDataplaneAuth() override { note("dismissDataplaneAuth"); }
    void actionDisplayUnenrollmentStatusInternal(UnenrollmentInternalStatus status) override {
        note("displayUnenrollmentStatusInternal", std::string(nameOf(status)));
    }
    void actionDisplayUnenrollmentStatus(const UnenrollmentStatusNotification_t& notification) override {
        note("displayUnenrollmentStatus", std::string(nameOf(notification.status)));
    }
    void actionDisplayAlertDialog(AlertDialogAction action) override {
        note("displayAlertDialog", std::to_string(static_cast<int>(action)));
    }
    void actionDismissAlertDialog() override { note("dismissAlertDialog"); }

private:
    void note(const std::string& slot, const std::string& argument = "") {
        calls.push_back(argument.empty() ? slot : slot + "(" + argument + ")");
        if (apiErrors.contains(slot)) {
            throw ApiError_ex(slot);
        }
        if (otherErrors.contains(slot)) {
            throw std::runtime_error(slot);
        }
    }
};

inline std::string replaced(std::string text, const std::string& what, const std::string& by) {
    for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + by.size())) {
        text.replace(at, what.size(), by);
    }
    return text;
}

/// A trace line in short: "root E", "sub E", "A -> B", or the action's name.
inline std::string shortened(std::string line) {
    line = replaced(line, "[struct PresentationPlugin_s][process_event] ", "root ");
    line = replaced(line, "[struct Started_s][process_event] ", "sub ");
    line = replaced(line, "[struct PresentationPlugin_s][transition] ", "");
    line = replaced(line, "[struct Started_s][transition] ", "");
    line = replaced(line, "state machine action ", "");
    line = replaced(line, "boost::ext::sml::v1_1_11::back::", "");
    line = replaced(line, "exception<class ApiError_ex,class ApiError_ex>", "exception");
    return replaced(replaced(line, "struct ", ""), "class ", "");
}

inline StatusNotification_e status(const std::string& state) {
    auto record = std::make_shared<StatusNotification_t>();
    record->state = state;
    return {record};
}

inline DataplaneNotification_e dataplane() {
    auto record = std::make_shared<DataplaneNotification_t>();
    record->version = "1";
    return {record};
}

inline EnrollmentStatusNotification_e enrollment(EnrollmentStatus progress) {
    EnrollmentStatusNotification_e event;
    event.notification.status = progress;
    return event;
}

inline UnenrollmentStatusNotification_e unenrollment(UnenrollmentStatus progress) {
    UnenrollmentStatusNotification_e event;
    event.notification.status = progress;
    return event;
}

inline EnrollmentAuthRequest_e authRequest() {
    EnrollmentAuthRequest_e event;
    event.request.start_url = "https://start";
    return event;
}

inline DataplaneAuthRequest_e dataplaneAuthRequest(const std::string& context) {
    DataplaneAuthRequest_e event;
    event.request.context_id = context;
    return event;
}

inline const InitiateEnrollment_e initiateEnrollment{"1", "choice", ""};
inline const InitiateReEnrollment_e initiateReEnrollment{"1", "enr", ""};
inline const InitiateUnenrollment_e initiateUnenrollment{"1", "enr", ""};
inline const CancelEnrollment_e cancelEnrollment{"1", "enr"};
inline const EnrollmentAuthReply_e enrollmentAuthReply{"1", "enr", "cookie"};
inline const PerformConfigSync_e performConfigSync{"1", "enr"};
inline const TriggerPostureReports_e triggerPostureReports{"1"};
inline const DataplaneAuthReply_e dataplaneAuthReply{"1", "ctx", "cookie"};

class MachineTest : public testing::Test {
public:
    /// Raises an event; `trace` and `calls` then hold what came of it.
    template <class Event>
    bool raise(const Event& event) {
        capture.clear();
        plugin.calls.clear();
        const bool taken = machine.process_event(event);
        trace.clear();
        for (const std::string& message : capture.messages()) {
            trace.push_back(shortened(message));
        }
        return taken;
    }

    void start() {
        raise(Register_e{7, nullptr, nullptr});
        raise(Start_e{});
    }

    template <class... States>
    bool regionsAre(States... states) const {
        return machine.is<decltype(sml::state<Started_s>)>(states...);
    }

    NotingPlugin plugin;
    test::LogCapture capture;
    PresentationPluginMachine machine{static_cast<IPresentationPluginSmCallbacks&>(plugin), quillSmlLogger()};
    Lines trace;
};

// Ways to a state of each region, and the events that lead there.

template <class Event>
std::function<bool(MachineTest&)> sends(const Event& event) {
    return [event](MachineTest& test) { return test.raise(event); };
}

template <class... Events>
std::function<void(MachineTest&)> after(const Events&... events) {
    return [=](MachineTest& test) { (test.raise(events), ...); };
}

inline const auto enrollStarted = enrollment(EnrollmentStatus::Started);
inline const auto enrollError = enrollment(EnrollmentStatus::Error);
inline const auto enrollComplete = enrollment(EnrollmentStatus::Complete);
inline const auto unenrollStarted = unenrollment(UnenrollmentStatus::Started);
inline const auto unenrollComplete = unenrollment(UnenrollmentStatus::Complete);

inline const auto active = after();
inline const auto enrolling = after(initiateEnrollment);
inline const auto enrollingStarted = after(initiateEnrollment, enrollStarted);
inline const auto authenticating = after(initiateEnrollment, enrollStarted, authRequest());
inline const auto progressing = after(initiateEnrollment, enrollStarted, authRequest(), enrollmentAuthReply);
inline const auto cancelling = after(initiateEnrollment, enrollStarted, cancelEnrollment);
inline const auto unenrolling = after(initiateUnenrollment);
inline const auto unenrollingStarted = after(initiateUnenrollment, unenrollStarted);
inline const auto dataplaneAuthenticating = after(dataplaneAuthRequest("ctx"));
inline const auto showingDialog = after(DetailsButtonClicked_e{});

} // namespace machine_test
