#include "common/PluginIdentity.h"
#include "presentation-plugin/PresentationPluginImpl.h"
#include "presentation-plugin/alerts/WrenAlerts.h"
#include "presentation-plugin/xml/AdvancedPanelsComposition.h"
#include "presentation-plugin/xml/StatisticsComposition.h"
#include "xml/XmlUINotice.h"

#include <algorithm>
#include <utility>

namespace {

/// Alerts of this type ask the user to verify: their button says so.
constexpr std::int32_t verifyAlertType = 2;

constexpr std::string_view statusUnchanged = "No change to current Status Notification.";
constexpr std::string_view dataplaneUnchanged = "No change to current Dataplane Notification.";

template <class Record>
bool areEqual(const std::shared_ptr<const Record>& first, const std::shared_ptr<const Record>& second) {
    return first && second && (first == second || *first == *second);
}

/// The certificate ended in a way that only a new enrollment mends.
bool isCertificateDead(CertificateState state) {
    return state == CertificateState::Expired || state == CertificateState::Revoked ||
           state == CertificateState::Rejected;
}

bool hasAlertWithToast(const WrenAlertList_t& list) {
    return std::any_of(list.alerts.begin(), list.alerts.end(), [](const WrenAlert_t& alert) {
        return !alert.toast_title.empty() && !alert.toast_message.empty();
    });
}

} // namespace

// Caching. Outside an enrollment or unenrollment a document is cached and rendered, within one only cached.

void PresentationPluginImpl::actionCacheStatusNotificationAndUpdateUI(
    std::shared_ptr<const StatusNotification_t> notification, bool& alertsPending) {
    constexpr std::string_view function = "PresentationPluginImpl::actionCacheStatusNotificationAndUpdateUI";
    if (!notification) {
        COMMON2_LOG(DBG_WARN, function) << "Received empty Status Notification.";
        return;
    }
    if (areEqual(cachedStatus, notification)) {
        COMMON2_LOG(DBG_TRACE, function) << statusUnchanged;
        return;
    }
    const bool showToast = !cachedStatus || cachedStatus->state != notification->state;
    cachedStatus = std::move(notification);
    updateMainUi(cachedStatus, cachedDataplane, showToast, alertsPending);
}

void PresentationPluginImpl::actionCacheDataplaneNotificationAndUpdateUI(
    std::shared_ptr<const DataplaneNotification_t> notification, bool& alertsPending) {
    constexpr std::string_view function =
        "PresentationPluginImpl::actionCacheDataplaneNotificationAndUpdateUI";
    if (!notification) {
        COMMON2_LOG(DBG_WARN, function) << "Received empty Dataplane Notification.";
        return;
    }
    if (areEqual(cachedDataplane, notification)) {
        COMMON2_LOG(DBG_TRACE, function) << dataplaneUnchanged;
        return;
    }
    cachedDataplane = std::move(notification);
    updateMainUi(cachedStatus, cachedDataplane, false, alertsPending);
}

void PresentationPluginImpl::actionOnlyCacheStatusNotification(
    std::shared_ptr<const StatusNotification_t> notification) {
    if (areEqual(cachedStatus, notification)) {
        COMMON2_LOG(DBG_TRACE, "PresentationPluginImpl::actionOnlyCacheStatusNotification")
            << statusUnchanged;
        return;
    }
    cachedStatus = std::move(notification);
    if (!cachedStatus) {
        knownStatusText.forget();
    }
}

void PresentationPluginImpl::actionOnlyCacheDataplaneNotification(
    std::shared_ptr<const DataplaneNotification_t> notification) {
    if (areEqual(cachedDataplane, notification)) {
        COMMON2_LOG(DBG_TRACE, "PresentationPluginImpl::actionOnlyCacheDataplaneNotification")
            << dataplaneUnchanged;
        return;
    }
    cachedDataplane = std::move(notification);
    if (!cachedDataplane) {
        knownDataplaneText.forget();
    }
}

void PresentationPluginImpl::actionOnlyUpdateUI(bool& alertsPending) {
    if (!cachedStatus) {
        COMMON2_LOG(DBG_WARN, "PresentationPluginImpl::actionOnlyUpdateUI")
            << "Can't update from empty Dataplane Notification.";
        return;
    }
    updateMainUi(cachedStatus, cachedDataplane, false, alertsPending);
}

bool PresentationPluginImpl::alertListIsEmpty() const { return alerts.alerts.empty(); }

// The first picture of a fresh start.

void PresentationPluginImpl::actionInitUI() {
    renderInitTile();
    initAdvEnrollmentGroup();
    initAdvConfigSyncGroup();
    initStatsOverview();
    initStatsDetails();
}

// What a status says on screen.

void PresentationPluginImpl::updateMainUi(const std::shared_ptr<const StatusNotification_t>& status,
                                          const std::shared_ptr<const DataplaneNotification_t>& dataplane,
                                          bool showToast, bool& alertsPending) {
    alertsPending = false;
    if (!renderStatsUpdates(status.get())) {
        return;
    }
    WrenAlertList_t derived = buildAlertList(status, dataplane, alertTime);
    const bool hasNew = hasNewAlert(derived, alerts);
    const bool hasChanged = derived != alerts;
    alerts = std::move(derived);

    const bool isActive = status->state == "active";
    const bool canEnroll = !status->enrollment_choices.empty();
    const bool isEnrolled = !status->enrollments.empty();
    if (status->state == "error") {
        renderGlobalError();
    } else if (status->state == "init") {
        actionInitUI();
    } else if (isActive && !isEnrolled && canEnroll) {
        renderUnenrolledTile(status->enrollment_choices.front(), showToast);
    } else if (isActive && isEnrolled && !canEnroll) {
        renderEnrolledTile(status->enrollments.front(), hasNew);
    } else {
        COMMON2_LOG(DBG_WARN, "PresentationPluginImpl::updateMainUi")
            << "Ignoring unexpected Status Notification";
        return;
    }
    alertsPending = alerts.alerts.empty() || hasChanged;
}

void PresentationPluginImpl::renderInitTile() {
    constexpr const char* initializing = "Initializing. Please wait...";
    renderTile(UiNoticeType::Setup,
               {.status = initializing, .trayText = initializing, .trayState = UiTrayState::Transition});
}

void PresentationPluginImpl::renderGlobalError() {
    if (alerts.alerts.empty()) {
        COMMON2_LOG(DBG_WARN, "PresentationPluginImpl::renderGlobalError")
            << "Have global error without alerts to show";
        return;
    }
    const WrenAlert_t& first = alerts.alerts.front();
    renderTile(UiNoticeType::Update, {.status = first.tile_message.c_str(),
                                      .trayText = first.tile_title.c_str(),
                                      .trayState = UiTrayState::Error,
                                      .details = offeredButton});
    updateAdvEnrollmentInactive(false);
    updateAdvConfigSyncInactive();
}

void PresentationPluginImpl::renderEnrolledTile(const Enrollment_t& enrollment, bool toast) {
    if (alerts.alerts.empty()) {
        renderTile(UiNoticeType::Update,
                   {.status = "Wren Gate is active.", .trayText = "Active", .trayState = UiTrayState::Good});
    } else if (alerts.alerts.size() == 1) {
        const WrenAlert_t& alert = alerts.alerts.front();
        const bool verify = alert.type == verifyAlertType;
        renderTile(UiNoticeType::Update, {.status = alert.tile_message.c_str(),
                                          .trayText = alert.tile_title.c_str(),
                                          .trayState = UiTrayState::Attention,
                                          .details = verify ? ButtonState() : offeredButton,
                                          .verify = verify ? offeredButton : ButtonState()});
        if (toast) {
            showToast(alert.toast_title.c_str(), alert.toast_message.c_str(),
                      verify ? ToastButton::Verify : ToastButton::Details);
        }
    } else {
        renderTile(UiNoticeType::Update,
                   {.status =
                        "Some issues may be affecting secure resource access. Please review the provided "
                        "details.",
                    .trayText = "Alerts available",
                    .trayState = UiTrayState::Attention,
                    .details = offeredButton});
        if (toast && hasAlertWithToast(alerts)) {
            showToast(
                "Some issues may be affecting secure resource access",
                "We have identified some issues that may affect your access to secure resources. Please take "
                "a moment to review the detailed information provided.",
                ToastButton::Details);
        }
    }
    updateAdvEnrollmentActive(!enrollment.unenroll_allowed);
    if (isCertificateDead(enrollment.certificate_status.certificate_state)) {
        updateAdvConfigSyncInactive();
    } else {
        updateAdvConfigSyncActive(enrollment.config_sync_status.last_config_sync_success);
    }
}

void PresentationPluginImpl::renderUnenrolledTile(const EnrollmentChoice_t& choice, bool toast) {
    if (!alerts.alerts.empty()) {
        constexpr const char* cannotBegin = "Cannot begin enrollment. Contact your IT help desk.";
        renderTile(UiNoticeType::Update, {.status = cannotBegin,
                                          .trayText = cannotBegin,
                                          .trayState = UiTrayState::Attention,
                                          .details = offeredButton});
    } else if (choice.enroll_allowed) {
        constexpr const char* required = "Registration is required to access secure resources.";
        renderTile(UiNoticeType::Update, {.status = required,
                                          .trayText = "Registration required",
                                          .trayState = UiTrayState::Attention,
                                          .enroll = offeredButton});
        if (toast) {
            showToast(pluginIdentity::suite, required, ToastButton::Enroll);
        }
    } else {
        renderTile(
            UiNoticeType::Update,
            {.status = "Registration is being managed by your administrator to access secure resources.",
             .trayText = "Registration managed",
             .trayState = UiTrayState::Attention});
    }
    updateAdvEnrollmentInactive(!choice.enroll_allowed);
    updateAdvConfigSyncInactive();
}

void PresentationPluginImpl::renderTile(UiNoticeType type, const TileContent& content) {
    const bool isNew = tileStatusText != content.status;
    if (isNew) {
        COMMON2_LOG(DBG_TRACE, "PresentationPluginImpl::updateTileStatusStrings")
            << "Tile Status updated to: " << content.status;
    }
    const bool tellHistory = isNew && hasVisibleText(content.status);
    if (isNew) {
        tileStatusText = content.status;
    }
    if (type == UiNoticeType::Update) {
        sendPrepared(&PreparedScreens::tile, content, tellHistory);
        return;
    }
    XmlUINotice notice(type, nullptr, pluginIdentity::identity);
    composeTile(notice, content, tellHistory, *eventStore);
    sendNotice(notice);
}

// Advanced panels.

void PresentationPluginImpl::initAdvEnrollmentGroup() {
    sendAdvEnrollmentGroup(UiNoticeType::Setup, advEnrollmentSetup());
}

void PresentationPluginImpl::initAdvConfigSyncGroup() {
    sendAdvConfigSyncGroup(UiNoticeType::Setup, advConfigSyncSetup());
}

void PresentationPluginImpl::updateAdvEnrollmentActive(bool notAllowed) {
    sendAdvEnrollmentGroup(UiNoticeType::Update, advEnrollmentActive(notAllowed));
}

void PresentationPluginImpl::updateAdvEnrollmentInactive(bool managed) {
    sendAdvEnrollmentGroup(UiNoticeType::Update, advEnrollmentInactive(managed));
}

void PresentationPluginImpl::updateAdvConfigSyncActive(QuillTimePoint lastSync) {
    const std::string text(formatStatTime(lastSync, screens.localTimes()));
    sendAdvConfigSyncGroup(UiNoticeType::Update, advConfigSyncActive(text.c_str()));
}

void PresentationPluginImpl::updateAdvConfigSyncInactive() {
    sendAdvConfigSyncGroup(UiNoticeType::Update, advConfigSyncInactive());
}

void PresentationPluginImpl::sendAdvEnrollmentGroup(UiNoticeType type, const AdvEnrollmentGroup& group) {
    if (type == UiNoticeType::Update) {
        sendPrepared(&PreparedScreens::advEnrollment, group);
        return;
    }
    XmlUINotice notice(type, nullptr, pluginIdentity::identity);
    composeAdvEnrollmentGroup(notice, group, *eventStore);
    sendNotice(notice);
}

void PresentationPluginImpl::sendAdvConfigSyncGroup(UiNoticeType type, const AdvConfigSyncGroup& group) {
    if (type == UiNoticeType::Update) {
        sendPrepared(&PreparedScreens::advConfigSync, group);
        return;
    }
    XmlUINotice notice(type, nullptr, pluginIdentity::identity);
    composeAdvConfigSyncGroup(notice, group, *eventStore);
    sendNotice(notice);
}

// Statistics.

void PresentationPluginImpl::initStatsOverview() {
    XmlUINotice notice(UiNoticeType::Setup, nullptr, pluginIdentity::identity);
    composeStatsOverviewSetup(notice);
    sendNotice(notice);
}

void PresentationPluginImpl::initStatsDetails() {
    XmlUINotice notice(UiNoticeType::Setup, nullptr, pluginIdentity::identity);
    composeStatsDetailsSetup(notice);
    sendNotice(notice);
}

bool PresentationPluginImpl::renderStatsUpdates(const StatusNotification_t* status) {
    constexpr std::string_view function = "PresentationPluginImpl::renderStatsUpdates";
    if (!status) {
        COMMON2_LOG(DBG_WARN, function) << "Received empty Status Notification.";
        return false;
    }
    if (status->enrollments.size() > 1) {
        COMMON2_LOG(DBG_WARN, function)
            << "The enrollment list has more than one item. Stats will report only the "
               "first enrollment entry.";
    }
    sendPrepared(&PreparedScreens::statsOverview, *status);
    sendPrepared(&PreparedScreens::statsDetails, *status);
    return true;
}
