#include "presentation-plugin/alerts/WrenAlerts.h"

#include "presentation-plugin/tables/WrenAlertStringTable.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace {

/// A configuration sync that has worked before is reported once it has failed this often in a row.
constexpr std::uint32_t configSyncGrace = 5;

/// What a page of several alerts says around them.
struct SectionTexts {
    const char* title; ///< of the section and of the list
    const char* sectionDescription;
    const char* listDescription;
};

constexpr const char* sectionActionLabel = "See Details";

constexpr SectionTexts notEnrolledTexts{
    .title = "Cannot begin enrollment",
    .sectionDescription = "Several issues are preventing enrollment. Please take a moment to review the "
                          "detailed information provided.",
    .listDescription = "Contact your IT help desk about the following errors.",
};

constexpr SectionTexts enrolledTexts{
    .title = "Issues affecting secure resource access",
    .sectionDescription = "We have identified some issues that may affect your access to secure resources. "
                          "Please take a moment to review the detailed information provided.",
    .listDescription = "Resolve the following issues or contact your IT help desk.",
};

WrenAlert_t makeAlert(const WrenAlertStrings_t& row, QuillTimePoint timestamp) {
    return {.type = row.priority,
            .priority = row.priority,
            .timestamp = timestamp,
            .tile_message = row.tile_message,
            .tile_title = row.tile_title,
            .title = row.title,
            .short_message = row.short_message,
            .long_message = row.long_message,
            .toast_title = row.toast_title,
            .toast_message = row.toast_message,
            .action = nullptr};
}

WrenAlert_t makeAlert(WrenAlertId id, QuillTimePoint timestamp) {
    return makeAlert(WrenAlertStringTable::GetEntry(id), timestamp);
}

/// An alert that asks the user to go on from its detail page.
WrenAlert_t makeLocalAlert(WrenAlertId id, QuillTimePoint timestamp, const char* type,
                           const std::string& value) {
    const WrenAlertStrings_t& row = WrenAlertStringTable::GetEntry(id);
    WrenAlert_t alert = makeAlert(row, timestamp);
    alert.action = std::make_shared<WrenAlertLocalAction>(row.action_label, row.detail_title,
                                                          row.detail_description, type, value);
    return alert;
}

WrenAlertId globalErrorId(const StatusNotification_t& status) {
    if (status.substate == "ipc_failure") {
        return ALERT_IPC_FAILURE;
    }
    if (status.substate == "no_choice") {
        return ALERT_NO_CHOICE;
    }
    if (status.substate == "not_single_user") {
        return ALERT_NOT_SINGLE_USER;
    }
    if (status.substate == "no_service" || status.service_status == ServiceStatus::Notice) {
        return ALERT_NO_SERVICE;
    }
    return ALERT_GLOBAL_ERROR;
}

/// The alert for a certificate that the user can and must renew; none for any other.
std::optional<WrenAlertId> reenrollAlertId(const Enrollment_t& enrollment) {
    if (!enrollment.reenroll_allowed) {
        return std::nullopt;
    }
    switch (enrollment.certificate_status.certificate_state) {
    case CertificateState::Expired:
        return ALERT_REENROLL_EXPIRED;
    case CertificateState::Revoked:
        return ALERT_REENROLL_REVOKED;
    case CertificateState::Rejected:
        return ALERT_REENROLL;
    case CertificateState::Unknown:
    case CertificateState::Ok:
    case CertificateState::InternalError:
        break;
    }
    return std::nullopt;
}

void addAuthAlerts(const DataplaneNotification_t& dataplane, std::vector<WrenAlert_t>& alerts) {
    alerts.reserve(dataplane.dataplane_auth_requests.size());
    for (const DataplaneAuthRequest_t& request : dataplane.dataplane_auth_requests) {
        alerts.push_back(
            makeLocalAlert(ALERT_DATAPLANE_AUTH, request.timestamp, "dataplane-auth", request.context_id));
    }
}

/// What only the user can settle: renewing the enrollment, else authenticating for the flows that wait. An
/// alert of this kind hides all others.
void addUserAlerts(const Enrollment_t& enrollment, const DataplaneNotification_t* dataplane,
                   QuillTimePoint alertTime, std::vector<WrenAlert_t>& alerts) {
    if (const std::optional<WrenAlertId> id = reenrollAlertId(enrollment)) {
        alerts.push_back(makeLocalAlert(*id, alertTime, "re-enroll", enrollment.id));
    } else if (dataplane) {
        addAuthAlerts(*dataplane, alerts);
    }
}

/// An alert that is due, before its texts are copied: what has its place in the list by priority and time is
/// sorted while it is light.
struct AlertPlan {
    const WrenAlertStrings_t* row;
    QuillTimePoint timestamp;
    const DataplaneAlert_t* source; ///< null where the row says all
};

AlertPlan tableAlert(WrenAlertId id, QuillTimePoint timestamp) {
    return {&WrenAlertStringTable::GetEntry(id), timestamp, nullptr};
}

/// A component of which nothing is known is not failing.
template <class Connectivity>
bool isFailing(Connectivity connectivity) {
    return connectivity != Connectivity::Unknown && connectivity != Connectivity::Ok;
}

void addComponentAlerts(const StatusNotification_t& status, QuillTimePoint alertTime,
                        std::vector<AlertPlan>& plans) {
    if (isFailing(status.interceptor_connectivity)) {
        plans.push_back(tableAlert(ALERT_INTERCEPTOR, alertTime));
    }
    if (isFailing(status.posture_connectivity)) {
        plans.push_back(tableAlert(ALERT_POSTURE, alertTime));
    }
    if (status.hw_key_store_availability == HwKeyStoreAvailability::NotSupported) {
        plans.push_back(tableAlert(ALERT_HW_KEY_STORE, alertTime));
    }
}

void addServerAlerts(const Enrollment_t& enrollment, QuillTimePoint alertTime,
                     std::vector<AlertPlan>& plans) {
    const ConfigSyncStatus_t& sync = enrollment.config_sync_status;
    const bool graceIsOver =
        sync.fail_cnt_since_last_sync_success >= configSyncGrace || sync.last_config_sync_success == 0;
    if (isFailing(sync.server_connectivity) && graceIsOver) {
        plans.push_back(tableAlert(ALERT_CONFIG_SYNC, alertTime));
    }
    if (isFailing(enrollment.dataplane_status.server_connectivity)) {
        plans.push_back(tableAlert(ALERT_SERVER_CONNECTIVITY, alertTime));
    }
}

WrenAlertId dataplaneAlertId(DataplaneAlertCategory category) {
    switch (category) {
    case DataplaneAlertCategory::PostureError:
        return ALERT_DATAPLANE_POSTURE;
    case DataplaneAlertCategory::PolicyError:
        return ALERT_DATAPLANE_POLICY;
    case DataplaneAlertCategory::Unknown:
    case DataplaneAlertCategory::ConnectivityError:
        break;
    }
    return ALERT_DATAPLANE_CONNECTIVITY;
}

/// The backend's words, or the fixed ones where it has none.
std::string textOr(const std::string& text, const char* fixedText) { return text.empty() ? fixedText : text; }

WrenAlert_t makeDataplaneAlert(const WrenAlertStrings_t& row, const DataplaneAlert_t& source) {
    WrenAlert_t alert = {.type = row.priority,
                         .priority = row.priority,
                         .timestamp = source.timestamp,
                         .tile_message = textOr(source.tile_message, row.tile_message),
                         .tile_title = row.tile_title,
                         .title = textOr(source.title, row.title),
                         .short_message = textOr(source.short_message, row.short_message),
                         .long_message = textOr(source.long_message, row.long_message),
                         .toast_title = row.toast_title,
                         .toast_message = textOr(source.toast_message, row.toast_message),
                         .action = nullptr};
    if (!source.url.empty()) {
        alert.action =
            std::make_shared<WrenAlertRemoteAction>(textOr(source.url_label, row.action_label), source.url);
    }
    return alert;
}

void addDataplaneAlerts(const DataplaneNotification_t& dataplane, std::vector<AlertPlan>& plans) {
    plans.reserve(plans.size() + dataplane.dataplane_alerts.size());
    for (const DataplaneAlert_t& source : dataplane.dataplane_alerts) {
        plans.push_back(
            {&WrenAlertStringTable::GetEntry(dataplaneAlertId(source.category)), source.timestamp, &source});
    }
}

/// The more urgent first; of equally urgent ones the newer.
void sortForDisplay(std::vector<AlertPlan>& plans) {
    std::stable_sort(plans.begin(), plans.end(), [](const AlertPlan& left, const AlertPlan& right) {
        return left.row->priority != right.row->priority ? left.row->priority < right.row->priority
                                                         : left.timestamp > right.timestamp;
    });
}

std::vector<WrenAlert_t> makeAlerts(const std::vector<AlertPlan>& plans) {
    std::vector<WrenAlert_t> alerts;
    alerts.reserve(plans.size());
    for (const AlertPlan& plan : plans) {
        alerts.push_back(plan.source ? makeDataplaneAlert(*plan.row, *plan.source)
                                     : makeAlert(*plan.row, plan.timestamp));
    }
    return alerts;
}

void setSectionTexts(const SectionTexts& texts, WrenAlertList_t& list) {
    list.section_title = texts.title;
    list.section_description = texts.sectionDescription;
    list.section_action_label = sectionActionLabel;
    list.list_title = texts.title;
    list.list_description = texts.listDescription;
}

void addSectionTexts(const StatusNotification_t& status, WrenAlertList_t& list) {
    const bool enrolled = !status.enrollments.empty();
    const bool mayEnroll = !status.enrollment_choices.empty();
    if (status.state == "active" && enrolled != mayEnroll) {
        setSectionTexts(enrolled ? enrolledTexts : notEnrolledTexts, list);
    }
}

} // namespace

WrenAlertList_t buildAlertList(const std::shared_ptr<const StatusNotification_t>& status,
                               const std::shared_ptr<const DataplaneNotification_t>& dataplane,
                               QuillTimePoint alertTime) {
    WrenAlertList_t list;
    if (!status) {
        return list;
    }
    if (status->state == "error") {
        list.alerts.push_back(makeAlert(globalErrorId(*status), alertTime));
        return list;
    }
    // A device has one enrollment; what a longer list means beyond its first entry is nobody's business here.
    const Enrollment_t* first = status->enrollments.empty() ? nullptr : &status->enrollments.front();
    if (first) {
        addUserAlerts(*first, dataplane.get(), alertTime, list.alerts);
        if (!list.alerts.empty()) {
            return list;
        }
    }
    std::vector<AlertPlan> plans;
    addComponentAlerts(*status, alertTime, plans);
    if (first) {
        addServerAlerts(*first, alertTime, plans);
        if (dataplane) {
            addDataplaneAlerts(*dataplane, plans);
        }
    }
    sortForDisplay(plans);
    list.alerts = makeAlerts(plans);
    if (list.alerts.size() > 1) {
        addSectionTexts(*status, list);
    }
    return list;
}
