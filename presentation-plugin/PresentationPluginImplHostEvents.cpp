#include "common/PluginIdentity.h"
#include "presentation-plugin/PresentationPluginImpl.h"
#include "presentation-plugin/PresentationPluginImplRaise.h"
#include "xml/UiWireNames.h"
#include "xml/XmlUIEvent.h"
#include "xml/XmlUINotice.h"

#include <algorithm>

namespace {

constexpr std::string_view function = "PresentationPluginImpl::EventNotification";

constexpr const char* enrollmentWebControl = "quill_enrollment_browser_web_control";
constexpr const char* dataplaneWebControl = "quill_dataplane_auth_browser_web_control";
constexpr const char* alertWebControl = "quill_alert_browser_web_control";

constexpr std::string_view noEnrollmentInProgress = "No enrollment is currently in progress.";
constexpr std::string_view noEnrollmentId = "No enrollment ID found.";
constexpr std::string_view noAuthRequest =
    "No dataplane notification or authentication request is currently available";
/// Said of enrollments and choices alike: support tooling knows it by these words.
constexpr std::string_view listEmpty = "Enrollments list is empty.  Initiation of unenrollment skipped.";

/// An attribute of a control that came with the event; empty if there is no such control or attribute.
std::string read(const XmlUIEvent& event, const char* control, const char* attribute) {
    return event.getControl(control).getAttribute(attribute);
}

/// Logs that something is being handled, with the browser's error behind it where there is one.
void logHandling(std::string_view what, const std::string& error, int line = __builtin_LINE()) {
    if (error.empty()) {
        COMMON2_LOG_AT(DBG_INFO, common2::sourceName(__FILE__), line, function) << what;
    } else {
        COMMON2_LOG_AT(DBG_INFO, common2::sourceName(__FILE__), line, function)
            << what << " (" << error << ')';
    }
}

} // namespace

std::int32_t PresentationPluginImpl::EventNotification(const char* xml) {
    const XmlUIEvent event(xml);
    const std::string& id = event.getId();
    if (id.empty()) {
        COMMON2_LOG(DBG_ERROR, function)
            << "Could not validate an incoming event notification: " << (xml ? xml : "");
        return presentationFailed;
    }
    const EventStoreId kind = eventStore->Lookup(id.c_str());

    XmlUINotice notice(UiNoticeType::ApiLog, "apilog", pluginIdentity::identity);
    notice.addNode("eventnotification")
        .setAttribute(wire::id, id.c_str())
        .setAttribute("eventstore_id", eventStoreIdName(kind).data());
    sendNotice(notice);

    if (kind == EventStoreId::ERROR_POPUP_CLOSE) {
        closeErrorPopup();
        return presentationDone;
    }
    const common2::MutexLock lock(smMutex);
    if (routeLocked(kind, event)) {
        return presentationDone;
    }
    COMMON2_LOG(DBG_ERROR, function) << "Received an unknown event: " << eventStoreIdName(kind)
                                     << " from id= " << id;
    return presentationFailed;
}

bool PresentationPluginImpl::routeLocked(EventStoreId kind, const XmlUIEvent& event) {
    switch (kind) {
    case EventStoreId::ENROLL_ACTION:
    case EventStoreId::ENROLL_TOAST_ACTION:
        routeEnroll();
        return true;
    case EventStoreId::ENROLL_CANCEL_ACTION:
    case EventStoreId::ENROLLMENT_BROWSER_CLOSE:
        routeCancelEnrollment();
        return true;
    case EventStoreId::UNENROLL_ACTION:
        routeUnenroll();
        return true;
    case EventStoreId::CONFIG_SYNC_ACTION:
        routeConfigSync();
        return true;
    case EventStoreId::ENROLLMENT_BROWSER_END_URL_REACHED:
        routeEnrollmentCookie(event);
        return true;
    case EventStoreId::ENROLLMENT_BROWSER_ERROR:
        routeEnrollmentBrowserError(event);
        return true;
    case EventStoreId::DATAPLANE_AUTH_BROWSER_END_URL_REACHED:
        routeDataplaneCookie(event);
        return true;
    case EventStoreId::DATAPLANE_AUTH_BROWSER_ERROR:
        routeDataplaneBrowserError(event);
        return true;
    case EventStoreId::DATAPLANE_AUTH_BROWSER_CLOSE:
        routeDataplaneBrowserClose();
        return true;
    case EventStoreId::ALERT_BROWSER_ERROR:
        COMMON2_LOG(DBG_ERROR, function) << "Unexpected issue displaying alert dialog";
        [[fallthrough]];
    case EventStoreId::ALERT_BROWSER_CLOSE:
        raise(AlertDialogDismissed_e{}, function);
        return true;
    case EventStoreId::ERROR_DETAILS_ACTION:
    case EventStoreId::ERROR_DETAILS_TOAST_ACTION:
        raise(DetailsButtonClicked_e{}, function);
        return true;
    case EventStoreId::AUTH_VERIFY_ACTION:
    case EventStoreId::AUTH_VERIFY_TOAST_ACTION:
        routeVerify();
        return true;
    case EventStoreId::LOCAL_BROWSE_EVENT:
        routeLocalBrowseEvent(event);
        return true;
    case EventStoreId::ERROR_POPUP_CLOSE:
    case EventStoreId::EVENT_INVALID:
        break;
    }
    return false;
}

// Enrollment.

void PresentationPluginImpl::routeEnroll() {
    if (!cachedStatus || cachedStatus->enrollment_choices.empty()) {
        COMMON2_LOG(DBG_ERROR, function) << listEmpty;
        return;
    }
    const std::string& id = cachedStatus->enrollment_choices.front().id;
    if (id.empty()) {
        COMMON2_LOG(DBG_ERROR, function) << "No Choice ID found.";
        return;
    }
    raise(InitiateEnrollment_e{requestVersion, id, {}}, function);
}

void PresentationPluginImpl::routeCancelEnrollment() {
    if (currentEnrollmentId.empty()) {
        COMMON2_LOG(DBG_WARN, function) << noEnrollmentInProgress;
        return;
    }
    raise(CancelEnrollment_e{requestVersion, currentEnrollmentId}, function);
}

void PresentationPluginImpl::routeEnrollmentCookie(const XmlUIEvent& event) {
    if (currentEnrollmentId.empty()) {
        COMMON2_LOG(DBG_WARN, function) << noEnrollmentInProgress;
        return;
    }
    raise(EnrollmentAuthReply_e{requestVersion, currentEnrollmentId,
                                read(event, enrollmentWebControl, wire::value)},
          function);
}

void PresentationPluginImpl::routeEnrollmentBrowserError(const XmlUIEvent& event) {
    // Hosts rely on this route reading the dataplane browser's control.
    logHandling("Handling enrollment browser error notification",
                read(event, dataplaneWebControl, wire::error));
    if (currentEnrollmentId.empty()) {
        COMMON2_LOG(DBG_WARN, function) << noEnrollmentInProgress;
        return;
    }
    raise(EnrollmentAuthReply_e{requestVersion, currentEnrollmentId, {}}, function);
}

// An existing enrollment.

void PresentationPluginImpl::routeUnenroll() {
    if (!cachedStatus || cachedStatus->enrollments.empty()) {
        COMMON2_LOG(DBG_ERROR, function) << listEmpty;
        return;
    }
    const std::string& id = cachedStatus->enrollments.front().id;
    if (id.empty()) {
        COMMON2_LOG(DBG_ERROR, function) << noEnrollmentId;
        return;
    }
    raise(InitiateUnenrollment_e{requestVersion, id, {}}, function);
}

void PresentationPluginImpl::routeConfigSync() {
    if (!cachedStatus || cachedStatus->enrollments.empty()) {
        COMMON2_LOG(DBG_WARN, function) << "Enrollments list is empty. Config sync skipped.";
        return;
    }
    const std::string& id = cachedStatus->enrollments.front().id;
    if (id.empty()) {
        COMMON2_LOG(DBG_ERROR, function) << noEnrollmentId;
        return;
    }
    raise(PerformConfigSync_e{requestVersion, id}, function);
}

// Dataplane authentication.

void PresentationPluginImpl::routeDataplaneCookie(const XmlUIEvent& event) {
    COMMON2_LOG(DBG_INFO, function) << "Handling dataplane authentication browser complete notification";
    if (currentDataplaneAuthContextId.empty()) {
        COMMON2_LOG(DBG_WARN, function) << "No dataplane authentication is currently in progress";
        return;
    }
    raise(DataplaneAuthReply_e{requestVersion, currentDataplaneAuthContextId,
                               read(event, dataplaneWebControl, wire::value)},
          function);
}

void PresentationPluginImpl::routeDataplaneBrowserError(const XmlUIEvent& event) {
    logHandling("Handling dataplane authentication browser error notification",
                read(event, dataplaneWebControl, wire::error));
    if (currentDataplaneAuthContextId.empty()) {
        COMMON2_LOG(DBG_WARN, function) << "No dataplane authentication is currently in progress.";
        return;
    }
    raise(DataplaneAuthReply_e{requestVersion, currentDataplaneAuthContextId, {}}, function);
}

void PresentationPluginImpl::routeDataplaneBrowserClose() {
    COMMON2_LOG(DBG_INFO, function) << "Handling dataplane authentication browser close notification";
    raise(CancelDataplaneAuth_e{}, function);
}

void PresentationPluginImpl::routeVerify() {
    COMMON2_LOG(DBG_INFO, function) << "Handling authentication verify action";
    if (!cachedDataplane || cachedDataplane->dataplane_auth_requests.empty()) {
        COMMON2_LOG(DBG_ERROR, function) << noAuthRequest;
        return;
    }
    raise(DataplaneAuthRequest_e{cachedDataplane->dataplane_auth_requests.front()}, function);
}

void PresentationPluginImpl::routeDataplaneAuth(const std::string& contextId) {
    if (!cachedDataplane || cachedDataplane->dataplane_auth_requests.empty()) {
        COMMON2_LOG(DBG_ERROR, function) << noAuthRequest;
        return;
    }
    if (contextId.empty()) {
        COMMON2_LOG(DBG_ERROR, function) << "No dataplane authentication context ID specified";
        return;
    }
    const auto& requests = cachedDataplane->dataplane_auth_requests;
    const auto found =
        std::find_if(requests.begin(), requests.end(),
                     [&](const DataplaneAuthRequest_t& request) { return request.context_id == contextId; });
    if (found == requests.end()) {
        COMMON2_LOG(DBG_WARN, function)
            << "Dataplane authentication request with specified context ID not found";
        return;
    }
    raise(DataplaneAuthRequest_e{*found}, function);
}

// The page inside the alert dialog.

void PresentationPluginImpl::routeLocalBrowseEvent(const XmlUIEvent& event) {
    COMMON2_LOG(DBG_INFO, function) << "Handling local browser event notification";
    const std::string type = read(event, alertWebControl, wire::type);
    if (type.empty()) {
        COMMON2_LOG(DBG_TRACE, function) << "Unexpected browser event received";
        return;
    }
    const std::string value = read(event, alertWebControl, wire::value);
    if (value.empty()) {
        COMMON2_LOG(DBG_TRACE, function) << "Local browser event type \"" << type << "\" received";
    } else {
        COMMON2_LOG(DBG_TRACE, function)
            << "Local browser event type \"" << type << "\" received with value \"" << value << '"';
    }
    if (type == "posture-update") {
        raise(TriggerPostureReports_e{requestVersion}, function);
    } else if (type == "dataplane-auth") {
        routeDataplaneAuth(value);
    } else if (type == "re-enroll") {
        if (value.empty()) {
            COMMON2_LOG(DBG_ERROR, function) << "No re-enrollment ID specified";
            return;
        }
        raise(InitiateReEnrollment_e{requestVersion, value, {}}, function);
    }
}
