#include "tests/boundary/MachineModel.h"

#include <algorithm>
#include <map>

namespace test {
namespace {

/// Actions stand in their order; ">" raises an event on the root's queue. An empty target stays.
struct Row {
    std::string_view source;
    std::string_view event;
    std::string_view condition;
    std::string_view actions;
    std::string_view target;
};

constexpr Row rootRows[] = {
    {"Unregistered_s", "Register_e", "", "RegisterCallbacks_a", "Registered_s"},
    {"Registered_s", "Start_e", "", "InitUI_a StartApi_a", "Starting_s"},
    {"Registered_s", "Unregister_e", "", "UnregisterCallbacks_a", "Unregistered_s"},
    {"Starting_s", "anonymous", "", "", "Started_s"},
    {"Starting_s", "exception", "", "DisplayApiErrorInternal_a", "Registered_s"},
    {"Started_s", "Stop_e", "", "StopApi_a NotifyUIStopDone_a", "Registered_s"},
};

constexpr std::size_t regionCount = 5;
constexpr std::array<std::string_view, regionCount> initialStates{
    "MainActive_s", "EnrollIdle_s", "DataplaneAuthIdle_s", "UnenrollIdle_s", "AlertIdle_s"};

constexpr Row regionRows[] = {
    {"MainActive_s", "StatusNotification_e", "", "CacheStatusNotificationAndUpdateUI_a", ""},
    {"MainActive_s", "DataplaneNotification_e", "", "CacheDataplaneNotificationAndUpdateUI_a", ""},
    {"MainActive_s", "InitiateEnrollment_e", "", "", "MainEnrolling_s"},
    {"MainActive_s", "InitiateReEnrollment_e", "", "", "MainEnrolling_s"},
    {"MainActive_s", "InitiateUnenrollment_e", "", "", "MainUnenrolling_s"},
    {"MainActive_s", "PerformConfigSync_e", "", "ApiPerformConfigSync_a", ""},
    {"MainActive_s", "TriggerPostureReports_e", "", "ApiTriggerPostureReports_a", ""},
    {"MainEnrolling_s", "StatusNotification_e", "error",
     "CacheStatusNotificationAndUpdateUI_a >AbortEnrollment_e", "MainActive_s"},
    {"MainEnrolling_s", "StatusNotification_e", "!error", "OnlyCacheStatusNotification_a", ""},
    {"MainEnrolling_s", "DataplaneNotification_e", "", "OnlyCacheDataplaneNotification_a", ""},
    {"MainEnrolling_s", "EnrollmentDone_e", "", "OnlyUpdateUI_a", "MainActive_s"},
    {"MainUnenrolling_s", "StatusNotification_e", "error",
     "CacheStatusNotificationAndUpdateUI_a >AbortUnenrollment_e", "MainActive_s"},
    {"MainUnenrolling_s", "StatusNotification_e", "!error", "OnlyCacheStatusNotification_a", ""},
    {"MainUnenrolling_s", "DataplaneNotification_e", "", "OnlyCacheDataplaneNotification_a", ""},
    {"MainUnenrolling_s", "UnenrollmentDone_e", "", "OnlyUpdateUI_a", "MainActive_s"},

    {"EnrollIdle_s", "InitiateEnrollment_e", "",
     "DisplayEnrollmentStatusInitiating_a ApiInitiateEnrollment_a", "EnrollRequestPending_s"},
    {"EnrollIdle_s", "InitiateReEnrollment_e", "",
     "DisplayEnrollmentStatusInitiating_a ApiInitiateReEnrollment_a", "EnrollRequestPending_s"},
    {"EnrollRequestPending_s", "EnrollmentStatusNotification_e", "Started", "DisplayEnrollmentStatus_a",
     "EnrollStarted_s"},
    {"EnrollRequestPending_s", "EnrollmentStatusNotification_e", "Error",
     "DisplayEnrollmentStatus_a >EnrollmentDone_e", "EnrollIdle_s"},
    {"EnrollRequestPending_s", "AbortEnrollment_e", "", "DisplayEnrollmentAborted_a", "EnrollIdle_s"},
    {"EnrollStarted_s", "EnrollmentAuthRequest_e", "", "DisplayEnrollmentAuthRequest_a",
     "EnrollAuthenticating_s"},
    {"EnrollStarted_s", "EnrollmentStatusNotification_e", "!Started",
     "DisplayEnrollmentStatus_a >EnrollmentDone_e", "EnrollIdle_s"},
    {"EnrollStarted_s", "CancelEnrollment_e", "", "DisplayEnrollmentStatusCancelling_a ApiCancelEnrollment_a",
     "EnrollCancelPending_s"},
    {"EnrollStarted_s", "AbortEnrollment_e", "", "DisplayEnrollmentAborted_a", "EnrollIdle_s"},
    {"EnrollAuthenticating_s", "EnrollmentAuthReply_e", "",
     "DisplayEnrollmentStatusAuthDone_a ApiEnrollmentAuthReply_a", "EnrollProgress_s"},
    {"EnrollAuthenticating_s", "EnrollmentStatusNotification_e", "!Started",
     "DisplayEnrollmentStatus_a >EnrollmentDone_e", "EnrollIdle_s"},
    {"EnrollAuthenticating_s", "CancelEnrollment_e", "",
     "DisplayEnrollmentStatusCancelling_a ApiCancelEnrollment_a", "EnrollCancelPending_s"},
    {"EnrollAuthenticating_s", "AbortEnrollment_e", "", "DisplayEnrollmentAborted_a", "EnrollIdle_s"},
    {"EnrollCancelPending_s", "EnrollmentStatusNotification_e", "!Started",
     "DisplayEnrollmentStatus_a >EnrollmentDone_e", "EnrollIdle_s"},
    {"EnrollCancelPending_s", "AbortEnrollment_e", "", "DisplayEnrollmentAborted_a", "EnrollIdle_s"},
    {"EnrollProgress_s", "EnrollmentStatusNotification_e", "Complete",
     "DisplayEnrollmentStatus_a >EnrollmentDone_e", "EnrollIdle_s"},
    {"EnrollProgress_s", "CancelEnrollment_e", "",
     "DisplayEnrollmentStatusCancelling_a ApiCancelEnrollment_a", "EnrollCancelPending_s"},
    {"EnrollProgress_s", "AbortEnrollment_e", "", "DisplayEnrollmentAborted_a", "EnrollIdle_s"},

    {"DataplaneAuthIdle_s", "DataplaneAuthRequest_e", "", "DisplayDataplaneAuthRequest_a",
     "DataplaneAuthenticating_s"},
    {"DataplaneAuthenticating_s", "DataplaneAuthRequest_e", "", "DisplayDataplaneAuthRequest_a", ""},
    {"DataplaneAuthenticating_s", "DataplaneAuthReply_e", "", "DismissDataplaneAuth_a DataplaneAuthReply_a",
     "DataplaneAuthIdle_s"},
    {"DataplaneAuthenticating_s", "CancelDataplaneAuth_e", "", "DismissDataplaneAuth_a",
     "DataplaneAuthIdle_s"},

    {"UnenrollIdle_s", "InitiateUnenrollment_e", "",
     "DisplayUnenrollmentStatusInitiating_a ApiInitiateUnenrollment_a", "UnenrollRequestPending_s"},
    {"UnenrollRequestPending_s", "UnenrollmentStatusNotification_e", "Started", "DisplayUnenrollmentStatus_a",
     "UnenrollStarted_s"},
    {"UnenrollRequestPending_s", "AbortUnenrollment_e", "", "DisplayUnenrollmentAborted_a", "UnenrollIdle_s"},
    {"UnenrollStarted_s", "UnenrollmentStatusNotification_e", "Complete",
     "DisplayUnenrollmentStatus_a >UnenrollmentDone_e", "UnenrollIdle_s"},
    {"UnenrollStarted_s", "AbortUnenrollment_e", "", "DisplayUnenrollmentAborted_a", "UnenrollIdle_s"},

    {"AlertIdle_s", "DetailsButtonClicked_e", "", "DisplayAlertDialog_a", "AlertShowingDialog_s"},
    {"AlertIdle_s", "AlertListChanged_e", "", "", ""},
    {"AlertShowingDialog_s", "DetailsButtonClicked_e", "", "BringAlertDialogToForeground_a", ""},
    {"AlertShowingDialog_s", "AlertListChanged_e", "noAlerts", "DismissAlertDialog_a", "AlertIdle_s"},
    {"AlertShowingDialog_s", "AlertListChanged_e", "!noAlerts",
     "UpdatUpdateAlertDialog_aeGlobalErrorDialog_a", ""},
    {"AlertShowingDialog_s", "AlertDialogDismissed_e", "", "DismissAlertDialog_a", "AlertIdle_s"},
};

const std::map<std::string_view, BackendCall> callsOfActions{
    {"ApiInitiateEnrollment_a", BackendCall::InitiateEnrollment},
    {"ApiInitiateReEnrollment_a", BackendCall::InitiateReEnrollment},
    {"ApiEnrollmentAuthReply_a", BackendCall::EnrollmentAuthReply},
    {"ApiCancelEnrollment_a", BackendCall::CancelEnrollment},
    {"ApiInitiateUnenrollment_a", BackendCall::InitiateUnenrollment},
    {"ApiPerformConfigSync_a", BackendCall::PerformConfigSync},
    {"ApiTriggerPostureReports_a", BackendCall::TriggerPostureReports},
    {"DataplaneAuthReply_a", BackendCall::DataplaneAuthReply},
    {"StartApi_a", BackendCall::Start},
};

const std::map<std::string_view, MachineFacts> factsOfSteps{
    {"register", {"Register_e"}},
    {"start", {"Start_e"}},
    {"stop", {"Stop_e"}},
    {"init", {"StatusNotification_e"}},
    {"error", {"StatusNotification_e", true}},
    {"notEnrolled", {"StatusNotification_e"}},
    {"enrolled", {"StatusNotification_e"}},
    {"alert", {"DataplaneNotification_e"}},
    {"authRequest", {"DataplaneNotification_e"}},
    {"noAlert", {"DataplaneNotification_e"}},
    {"started", {"EnrollmentStatusNotification_e", false, "Started"}},
    {"failed", {"EnrollmentStatusNotification_e", false, "Error"}},
    {"complete", {"EnrollmentStatusNotification_e", false, "Complete"}},
    {"login", {"EnrollmentAuthRequest_e"}},
    {"unenrollStarted", {"UnenrollmentStatusNotification_e", false, "Started"}},
    {"unenrolled", {"UnenrollmentStatusNotification_e", false, "Complete"}},
    {"enroll", {"InitiateEnrollment_e"}},
    {"cancel", {"CancelEnrollment_e"}},
    {"unenroll", {"InitiateUnenrollment_e"}},
    {"sync", {"PerformConfigSync_e"}},
    {"details", {"DetailsButtonClicked_e"}},
    {"verify", {"DataplaneAuthRequest_e"}},
    {"loggedIn", {"EnrollmentAuthReply_e"}},
    {"loginFailed", {"EnrollmentAuthReply_e"}},
    {"authorized", {"DataplaneAuthReply_e"}},
    {"closeAlert", {"AlertDialogDismissed_e"}},
    {"posture", {"TriggerPostureReports_e"}},
    {"reEnroll", {"InitiateReEnrollment_e"}},
};

constexpr std::string_view alertsChanged = "AlertListChanged_e";

bool isOfRegion(std::size_t region, std::string_view state) {
    constexpr std::array<std::string_view, regionCount> begins{"Main", "Enroll", "DataplaneAuth", "Unenroll",
                                                               "Alert"};
    return state.starts_with(begins[region]);
}

/// Whether the regions know the event at all; the others never reach them.
bool isKnownToRegions(std::string_view event) {
    return std::ranges::any_of(regionRows, [event](const Row& row) { return row.event == event; });
}

void replace(std::string& text, std::string_view old, std::string_view replacement) {
    for (std::size_t place = text.find(old); place != std::string::npos; place = text.find(old)) {
        text.replace(place, old.size(), replacement);
    }
}

} // namespace

MachineFacts factsOf(std::string_view step) { return factsOfSteps.at(step); }

std::vector<std::string> machineTrace(const std::vector<std::string>& messages) {
    std::vector<std::string> trace;
    for (std::string line : messages) {
        if (!line.starts_with("[struct ") && !line.starts_with("state machine action ")) {
            continue;
        }
        replace(line, "[struct PresentationPlugin_s][process_event] ", "root ");
        replace(line, "[struct Started_s][process_event] ", "sub ");
        replace(line, "[struct PresentationPlugin_s][transition] ", "");
        replace(line, "[struct Started_s][transition] ", "");
        replace(line, "state machine action ", "");
        replace(line, "boost::ext::sml::v1_1_11::back::", "");
        replace(line, "exception<class ApiError_ex,class ApiError_ex>", "exception");
        replace(line, "struct ", "");
        replace(line, "class ", "");
        trace.push_back(line);
    }
    return trace;
}

std::string MachineModel::follow(const std::vector<std::string>& trace, const MachineFacts& facts,
                                 bool isRefused) {
    lines = &trace;
    at = 0;
    now = facts;
    complaint.clear();
    if (!trace.empty()) {
        const bool isTaken = complete(dispatch(facts.event));
        if (complaint.empty() && at != trace.size()) {
            complaint = "nothing was to follow, but: " + trace[at];
        }
        if (complaint.empty() && isTaken == isRefused) {
            complaint = isTaken ? "taken, but called unexpected" : "not taken, and not called unexpected";
        }
    }
    return complaint;
}

bool MachineModel::isNext(std::string_view line) const { return at < lines->size() && (*lines)[at] == line; }

void MachineModel::expect(const std::string& line) {
    if (complaint.empty() && !isNext(line)) {
        complaint = "expected: " + line + ", but: " + (at < lines->size() ? (*lines)[at] : "the end");
    }
    ++at;
}

bool MachineModel::dispatch(std::string_view event) {
    try {
        return offer(event);
    } catch (const Failure&) {
        return offer("exception"); // whose actions call no backend
    }
}

bool MachineModel::offer(std::string_view event) {
    expect("root " + std::string(event));
    bool isTaken = false;
    if (root == "Started_s") {
        if (isKnownToRegions(event)) {
            isTaken = offerToRegions(event);
        }
        isTaken &= drain();
    }
    return offerToRoot(event) || isTaken;
}

bool MachineModel::offerToRegions(std::string_view event) {
    expect("sub " + std::string(event));
    bool isTaken = false;
    for (std::size_t region = 0; region < regionCount; ++region) {
        isTaken |= offerToRegion(region, event);
    }
    return isTaken;
}

bool MachineModel::offerToRegion(std::size_t region, std::string_view event) {
    for (const Row& row : regionRows) {
        if (!isOfRegion(region, row.source) || row.source != regions[region] || row.event != event ||
            !holds(row.condition)) {
            continue;
        }
        if (!row.target.empty()) {
            expect(std::string(row.source) + " -> " + std::string(row.target));
            regions[region] = row.target;
        }
        act(row.actions);
        return true;
    }
    return false;
}

bool MachineModel::offerToRoot(std::string_view event) {
    for (const Row& row : rootRows) {
        if (row.source == root && row.event == event) {
            expect(std::string(row.source) + " -> " + std::string(row.target));
            root = row.target;
            if (root == "Started_s") {
                regions = initialStates;
            }
            act(row.actions);
            return true;
        }
    }
    return false;
}

/// Whether the alerts have changed is up to the screen: the trace tells.
bool MachineModel::drain() {
    bool isTaken = true;
    if (mayTellOfAlerts && isNext("sub AlertListChanged_e")) {
        mayTellOfAlerts = false;
        isTaken = offerToRegions(alertsChanged);
    }
    mayTellOfAlerts = false;
    return isTaken;
}

bool MachineModel::complete(bool isTaken) {
    for (;;) {
        while (dispatch("anonymous") && complaint.empty()) {
        }
        if (queue.empty() || !complaint.empty()) {
            return isTaken;
        }
        while (!queue.empty()) {
            const std::string_view event = queue.front();
            queue.pop_front();
            isTaken &= dispatch(event);
        }
    }
}

void MachineModel::act(std::string_view actions) {
    while (!actions.empty()) {
        const std::size_t end = std::min(actions.find(' '), actions.size());
        actOne(actions.substr(0, end));
        actions.remove_prefix(std::min(end + 1, actions.size()));
    }
}

void MachineModel::actOne(std::string_view action) {
    if (action.front() == '>') {
        queue.push_back(action.substr(1));
        return;
    }
    expect(std::string(action));
    mayTellOfAlerts |= action == "CacheStatusNotificationAndUpdateUI_a" ||
                       action == "CacheDataplaneNotificationAndUpdateUI_a" || action == "OnlyUpdateUI_a";
    const auto call = callsOfActions.find(action);
    if (call != callsOfActions.end() && now.failing.contains(call->second)) {
        throw Failure();
    }
}

bool MachineModel::holds(std::string_view condition) const {
    if (condition.empty()) {
        return true;
    }
    if (condition.front() == '!') {
        return !holds(condition.substr(1));
    }
    if (condition == "noAlerts") {
        return isNext("AlertShowingDialog_s -> AlertIdle_s"); // only the plugin knows
    }
    return condition == "error" ? now.statusIsError : now.progress == condition;
}

} // namespace test
