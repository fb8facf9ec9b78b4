#include "common/PluginIdentity.h"
#include "presentation-plugin/PresentationPluginImpl.h"
#include "presentation-plugin/xml/ErrorPopupComposition.h"
#include "xml/UiNoticeHelpers.h"
#include "xml/UiWireNames.h"
#include "xml/XmlUINotice.h"

#include <array>

namespace {

/// How a completed enrollment is shown. A substatus without a row is only logged.
struct EnrollmentCompletion {
    EnrollmentSubstatus substatus;
    UiTrayState trayState;
    WrenEnrollmentStringId stringId;
    bool showError;
};

constexpr std::array<EnrollmentCompletion, 11> enrollmentCompletions{{
    {EnrollmentSubstatus::Success, UiTrayState::Transition, ENROLL_COMPLETE, false},
    {EnrollmentSubstatus::Cancelled, UiTrayState::Transition, ENROLL_CANCELLED, false},
    {EnrollmentSubstatus::InternalError, UiTrayState::Attention, ENROLL_INTERNAL_ERROR, true},
    {EnrollmentSubstatus::InitializationError, UiTrayState::Attention, ENROLL_INITIALIZATION_ERROR, true},
    {EnrollmentSubstatus::UserAuthenticationError, UiTrayState::Attention, ENROLL_AUTHENTICATION_ERROR, true},
    {EnrollmentSubstatus::DeviceRegistrationError, UiTrayState::Attention, ENROLL_DEVICE_REGISTRATION_ERROR,
     true},
    {EnrollmentSubstatus::PostureRegistrationError, UiTrayState::Attention, ENROLL_POSTURE_REGISTRATION_ERROR,
     true},
    {EnrollmentSubstatus::CertificateEnrollmentError, UiTrayState::Attention, ENROLL_CERTIFICATE_ERROR, true},
    {EnrollmentSubstatus::ServerCommunicationError, UiTrayState::Attention, ENROLL_SERVER_COMMUNICATION_ERROR,
     true},
    {EnrollmentSubstatus::ServerCertificateError, UiTrayState::Attention, ENROLL_SERVER_CERTIFICATE_ERROR,
     true},
    {EnrollmentSubstatus::PostureNoHardwareSecurityError, UiTrayState::Attention,
     ENROLL_NO_HARDWARE_SECURITY_ERROR, true},
}};

/// The tile as a row of an enrollment or unenrollment table shows it; "Verify" is never offered meanwhile.
TileContent progressTile(const WrenProgressStrings_t& row, UiTrayState trayState) {
    return {.status = row.tile_message,
            .trayText = row.tile_title,
            .trayState = trayState,
            .enroll = {row.enroll_hidden, row.enroll_disabled},
            .cancel = {row.cancel_hidden, row.cancel_disabled},
            .details = {row.details_hidden, row.details_disabled}};
}

} // namespace

// Enrollment.

void PresentationPluginImpl::displayEnrollmentProgress(UiTrayState trayState, WrenEnrollmentStringId stringId,
                                                       bool showError, bool showProgressPopup) {
    const WrenProgressStrings_t& row = WrenEnrollmentStringTable::GetEntry(stringId);
    renderTile(UiNoticeType::Update, progressTile(row, trayState));
    if (showProgressPopup) {
        notifyVTGUI(enrollmentBrowserPopup.generateEnrollmentProgressPopup(
            pluginIdentity::suiteAndLabel, clientDescription, row.tile_message));
    } else if (showError) {
        showErrorPopup(row.error_title, row.error_message);
    }
}

void PresentationPluginImpl::actionDisplayEnrollmentStatusInternal(EnrollmentInternalStatus status) {
    constexpr std::string_view function = "PresentationPluginImpl::actionDisplayEnrollmentStatusInternal";
    COMMON2_LOG(DBG_TRACE, function) << "Displaying internal enrollment status: " << nameOf(status);
    switch (status) {
    case EnrollmentInternalStatus::Initiating:
        displayEnrollmentProgress(UiTrayState::Transition, ENROLL_INITIATING, false, false);
        return;
    case EnrollmentInternalStatus::Cancelling:
        displayEnrollmentProgress(UiTrayState::Transition, ENROLL_CANCELLING, false, false);
        return;
    case EnrollmentInternalStatus::AuthDone:
        displayEnrollmentProgress(UiTrayState::Transition, ENROLL_AUTH_DONE, false, true);
        return;
    case EnrollmentInternalStatus::Aborted:
        currentEnrollmentId.clear();
        closePopup(enrollmentBrowserPopup);
        return;
    }
    COMMON2_LOG(DBG_ERROR, function) << "Invalid Internal Enrollment Status received: " << nameOf(status);
}

void PresentationPluginImpl::actionDisplayEnrollmentStatus(
    const EnrollmentStatusNotification_t& notification) {
    constexpr std::string_view function = "PresentationPluginImpl::actionDisplayEnrollmentStatus";
    const std::string_view status = nameOf(notification.status);
    const auto logWithSubstatus = [&] {
        COMMON2_LOG(DBG_TRACE, function)
            << "Displaying enrollment status: " << status << " (" << nameOf(notification.substatus) << ')';
    };
    switch (notification.status) {
    case EnrollmentStatus::Error:
        logWithSubstatus();
        displayEnrollmentProgress(UiTrayState::Attention, ENROLL_INTERNAL_ERROR, true, false);
        closePopup(enrollmentBrowserPopup);
        return;
    case EnrollmentStatus::Started:
        COMMON2_LOG(DBG_TRACE, function) << "Displaying enrollment status: " << status;
        currentEnrollmentId = notification.enrollment_id;
        displayEnrollmentProgress(UiTrayState::Transition, ENROLL_IN_PROGRESS, false, false);
        return;
    case EnrollmentStatus::Complete:
        logWithSubstatus();
        currentEnrollmentId.clear();
        displayEnrollmentCompletion(notification.substatus);
        return;
    case EnrollmentStatus::Unknown:
        break;
    }
    COMMON2_LOG(DBG_ERROR, function) << "Invalid enrollment status received: " << status;
}

void PresentationPluginImpl::displayEnrollmentCompletion(EnrollmentSubstatus substatus) {
    for (const EnrollmentCompletion& completion : enrollmentCompletions) {
        if (completion.substatus == substatus) {
            displayEnrollmentProgress(completion.trayState, completion.stringId, completion.showError, false);
            if (substatus == EnrollmentSubstatus::Success) {
                congratulate();
            }
            closePopup(enrollmentBrowserPopup);
            return;
        }
    }
    COMMON2_LOG(DBG_ERROR, "PresentationPluginImpl::actionDisplayEnrollmentStatus")
        << "Invalid enrollment substatus received" << nameOf(substatus);
}

/// Asks the host to hide its window and says that all is well.
void PresentationPluginImpl::congratulate() {
    XmlUINotice notice(UiNoticeType::Update, nullptr, pluginIdentity::identity);
    notice.addNode(wire::application).setAttribute(wire::show, wireBool(false));
    sendNotice(notice);
    showToast(pluginIdentity::suite,
              "Congratulations! You have successfully enrolled and now have access to your secure resources.",
              ToastButton::None);
}

void PresentationPluginImpl::actionDisplayEnrollmentAuthRequest(const EnrollmentAuthRequest_t& request) {
    if (request.enrollment_id != currentEnrollmentId) {
        COMMON2_LOG(DBG_ERROR, "PresentationPluginImpl::actionDisplayEnrollmentAuthRequest")
            << "Couldnt match enrollment authentication request to existing enrollment request";
        return;
    }
    notifyVTGUI(enrollmentBrowserPopup.generateEnrollmentAuthPopup(pluginIdentity::suiteAndLabel,
                                                                   clientDescription, request));
}

// Dataplane authentication.

void PresentationPluginImpl::actionDisplayDataplaneAuthRequest(const DataplaneAuthRequest_t& request) {
    currentDataplaneAuthContextId = request.context_id;
    notifyVTGUI(dataplaneAuthBrowserPopup.generateDataplaneAuthPopup(pluginIdentity::suiteAndLabel,
                                                                     clientDescription, request));
}

void PresentationPluginImpl::actionDismissDataplaneAuth() {
    if (currentDataplaneAuthContextId.empty()) {
        COMMON2_LOG(DBG_WARN, "PresentationPluginImpl::actionDismissDataplaneAuth")
            << "No in progress dataplane authentication request to dismiss";
        return;
    }
    currentDataplaneAuthContextId.clear();
    closePopup(dataplaneAuthBrowserPopup);
}

// Unenrollment.

void PresentationPluginImpl::displayUnenrollmentProgress(UiTrayState trayState,
                                                         WrenUnenrollmentStringId stringId, bool showError) {
    const WrenProgressStrings_t& row = WrenUnenrollmentStringTable::GetEntry(stringId);
    renderTile(UiNoticeType::Update, progressTile(row, trayState));
    if (showError) {
        showErrorPopup(row.error_title, row.error_message);
    }
}

void PresentationPluginImpl::actionDisplayUnenrollmentStatusInternal(UnenrollmentInternalStatus status) {
    switch (status) {
    case UnenrollmentInternalStatus::Initiating:
        displayUnenrollmentProgress(UiTrayState::Transition, UNENROLL_INITIATING, false);
        updateAdvEnrollmentInactive(false);
        return;
    case UnenrollmentInternalStatus::Aborted:
        // The tile is left to the rendering of the status that caused this.
        currentUnenrollmentId.clear();
        return;
    }
    COMMON2_LOG(DBG_ERROR, "PresentationPluginImpl::actionDisplayUnenrollmentStatusInternal")
        << "Invalid Internal Unenrollment Status received: " << nameOf(status);
}

void PresentationPluginImpl::actionDisplayUnenrollmentStatus(
    const UnenrollmentStatusNotification_t& notification) {
    constexpr std::string_view function = "PresentationPluginImpl::actionDisplayUnenrollmentStatus";
    const std::string_view status = nameOf(notification.status);
    const std::string_view substatus = nameOf(notification.substatus);
    const auto logWithSubstatus = [&] {
        COMMON2_LOG(DBG_TRACE, function)
            << "Displaying unenrollment status: " << status << " (" << substatus << ')';
    };
    switch (notification.status) {
    case UnenrollmentStatus::Error:
        logWithSubstatus();
        displayUnenrollmentProgress(UiTrayState::Attention, UNENROLL_INTERNAL_ERROR, true);
        return;
    case UnenrollmentStatus::Started:
        COMMON2_LOG(DBG_TRACE, function) << "Displaying unenrollment status: " << status;
        currentUnenrollmentId = notification.enrollment_id;
        displayUnenrollmentProgress(UiTrayState::Transition, UNENROLL_IN_PROGRESS, false);
        return;
    case UnenrollmentStatus::Complete:
        logWithSubstatus();
        currentUnenrollmentId.clear();
        if (notification.substatus == UnenrollmentSubstatus::Success) {
            displayUnenrollmentProgress(UiTrayState::Transition, UNENROLL_COMPLETE, false);
        } else if (notification.substatus == UnenrollmentSubstatus::InternalError) {
            displayUnenrollmentProgress(UiTrayState::Attention, UNENROLL_INTERNAL_ERROR, true);
        } else {
            COMMON2_LOG(DBG_ERROR, function) << "Invalid unenrollment substatus received" << substatus;
        }
        return;
    case UnenrollmentStatus::Unknown:
        break;
    }
    COMMON2_LOG(DBG_ERROR, function) << "Invalid Unenrollment Status received: " << status;
}

// The alert dialog.

void PresentationPluginImpl::actionDisplayAlertDialog(AlertDialogAction action) {
    switch (action) {
    case AlertDialogAction::Display:
        notifyVTGUI(
            alertBrowserPopup.generateAlertPopup(pluginIdentity::suiteAndLabel, clientDescription, alerts));
        return;
    case AlertDialogAction::BringToForeground:
        notifyVTGUI(alertBrowserPopup.generateBrowserShowExisting());
        return;
    case AlertDialogAction::Update:
        notifyVTGUI(alertBrowserPopup.generateAlertUpdate(pluginIdentity::suiteAndLabel, alerts));
        return;
    }
}

void PresentationPluginImpl::actionDismissAlertDialog() { closePopup(alertBrowserPopup); }

void PresentationPluginImpl::closePopup(BrowserPopupHelper& popup) {
    notifyVTGUI(popup.generateBrowserPopupClose());
}

// Toasts and the error popup.

void PresentationPluginImpl::showToast(const char* title, const char* text, ToastButton button) {
    if (!*title || !*text) {
        return;
    }
    XmlUINotice notice(UiNoticeType::Popup, nullptr, pluginIdentity::identity);
    composeToast(notice, title, text, button, *eventStore);
    sendNotice(notice);
}

void PresentationPluginImpl::showErrorPopup(const std::string& header, const std::string& details) {
    switch (errorPopups.find(errorPopupId, header, details)) {
    case ErrorPopupState::Shown::SameTexts:
        COMMON2_LOG(DBG_WARN, "PresentationPluginImpl::showErrorPopup")
            << "Duplicated error popup activation detected. Bypassing the repetition of error dialog "
               "rendering.";
        return;
    case ErrorPopupState::Shown::OtherTexts:
        closeErrorPopup();
        break;
    case ErrorPopupState::Shown::No:
        break;
    }
    XmlUINotice popup(UiNoticeType::Popup, nullptr, pluginIdentity::identity);
    errorPopups.insert(errorPopupId, header, details,
                       [&] { composeErrorPopup(popup, header.c_str(), details.c_str(), *eventStore); });
    sendNotice(popup);

    const std::string told = header + ' ' + details;
    XmlUINotice history(UiNoticeType::Update, nullptr, pluginIdentity::identity);
    if (hasVisibleText(told.c_str())) {
        addMessageHistory(history, told.c_str());
    }
    sendNotice(history);
}

void PresentationPluginImpl::closeErrorPopup() {
    if (!errorPopups.erase(errorPopupId, [this] { eventStore->Remove(errorPopupId); })) {
        COMMON2_LOG(DBG_WARN, "PresentationPluginImpl::closeErrorPopup")
            << "No error popup found of the given ID: " << errorPopupId;
        return;
    }
    XmlUINotice notice(UiNoticeType::Popup, nullptr, pluginIdentity::identity);
    composePopupDisposal(notice, errorPopupId);
    sendNotice(notice);
}
