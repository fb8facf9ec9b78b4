#include "presentation-plugin/xml/BrowserPopupHelper.h"

#include "common/PluginIdentity.h"
#include "common/api/DataplaneNotification.h"
#include "common/api/EnrollmentNotifications.h"
#include "common2/logging/Common2Loggers.h"
#include "presentation-plugin/alerts/WrenAlertPayload.h"
#include "presentation-plugin/xml/ErrorPopupComposition.h"
#include "xml/UiWireNames.h"
#include "xml/XmlUINotice.h"

#include <array>
#include <utility>

namespace {

constexpr const char* localPage = "wren/v1/index.html";
constexpr const char* updateFlow = "update-flow";

void setUnlessEmpty(XmlUICtrl& control, const char* name, const std::string& value) {
    if (!value.empty()) {
        control.setAttribute(name, value.c_str());
    }
}

} // namespace

const char* popupOperationLiteral(PopupOperation operation) noexcept {
    constexpr std::array literals{wire::browse_for_cookie, wire::browse, wire::browse_for_local_content,
                                  wire::dispatch_event};
    const auto index = static_cast<std::size_t>(operation);
    return index < literals.size() ? literals[index] : wire::browse;
}

BrowserPopupHelper::BrowserPopupHelper(std::shared_ptr<CEventStore> eventStore, std::string popupType_,
                                       std::string dialogId_, std::string webControlId_,
                                       std::string closeButtonId_)
    : owner(std::move(eventStore))
    , popupType(std::move(popupType_))
    , dialogId(std::move(dialogId_))
    , webControlId(std::move(webControlId_))
    , closeButtonId(std::move(closeButtonId_)) {}

std::string BrowserPopupHelper::generateDataplaneAuthPopup(const std::string& title,
                                                           const std::string& userAgent,
                                                           const DataplaneAuthRequest_t& request) {
    return generateBrowserPopup({.operation = PopupOperation::BrowseForCookie,
                                 .title = title,
                                 .userAgent = userAgent,
                                 .startUrl = request.start_url,
                                 .finalUrl = request.end_url,
                                 .cookieName = request.cookie_name,
                                 .onPress = EventStoreId::DATAPLANE_AUTH_BROWSER_END_URL_REACHED,
                                 .onError = EventStoreId::DATAPLANE_AUTH_BROWSER_ERROR,
                                 .onClose = EventStoreId::DATAPLANE_AUTH_BROWSER_CLOSE});
}

std::string BrowserPopupHelper::generateEnrollmentAuthPopup(const std::string& title,
                                                            const std::string& userAgent,
                                                            const EnrollmentAuthRequest_t& request) {
    return generateBrowserPopup({.operation = PopupOperation::BrowseForCookie,
                                 .title = title,
                                 .userAgent = userAgent,
                                 .startUrl = request.start_url,
                                 .finalUrl = request.end_url,
                                 .cookieName = request.cookie_name,
                                 .onPress = EventStoreId::ENROLLMENT_BROWSER_END_URL_REACHED,
                                 .onError = EventStoreId::ENROLLMENT_BROWSER_ERROR,
                                 .onClose = EventStoreId::ENROLLMENT_BROWSER_CLOSE});
}

std::string BrowserPopupHelper::generateEnrollmentProgressPopup(const std::string& title,
                                                                const std::string& userAgent,
                                                                const std::string& message) {
    // Nothing measures how far an enrollment has come, so the page is told 0 percent.
    return generateBrowserPopup({.operation = PopupOperation::BrowseForLocalContent,
                                 .title = title,
                                 .userAgent = userAgent,
                                 .startUrl = localPage,
                                 .dispatchName = updateFlow,
                                 .dispatchDetail = buildProgressPayload(message, 0),
                                 .onError = EventStoreId::ENROLLMENT_BROWSER_ERROR,
                                 .onClose = EventStoreId::ENROLLMENT_BROWSER_CLOSE});
}

std::string BrowserPopupHelper::generateAlertPopup(const std::string& title, const std::string& userAgent,
                                                   const WrenAlertList_t& alerts) {
    return generateBrowserPopup({.operation = PopupOperation::BrowseForLocalContent,
                                 .title = title,
                                 .userAgent = userAgent,
                                 .startUrl = localPage,
                                 .dispatchName = updateFlow,
                                 .dispatchDetail = buildAlertPayload(alerts),
                                 .disableControls = true,
                                 .onError = EventStoreId::ALERT_BROWSER_ERROR,
                                 .onClose = EventStoreId::ALERT_BROWSER_CLOSE,
                                 .onBrowseEvent = EventStoreId::LOCAL_BROWSE_EVENT});
}

std::string BrowserPopupHelper::generateAlertUpdate(const std::string& title, const WrenAlertList_t& alerts) {
    return generateBrowserPopup({.operation = PopupOperation::DispatchEvent,
                                 .title = title,
                                 .dispatchName = updateFlow,
                                 .dispatchDetail = buildAlertPayload(alerts),
                                 .disableControls = true,
                                 .onError = EventStoreId::ALERT_BROWSER_ERROR,
                                 .onClose = EventStoreId::ALERT_BROWSER_CLOSE,
                                 .onBrowseEvent = EventStoreId::LOCAL_BROWSE_EVENT});
}

std::string BrowserPopupHelper::generateBrowserPopup(const Content& content) {
    isShown = true;
    owner->Remove(dialogId.c_str());

    XmlUINotice notice(UiNoticeType::Popup, nullptr, pluginIdentity::identity);
    XmlNode popup = notice.getRoot();
    popup.setAttribute(wire::id, dialogId.c_str())
        .setAttribute(wire::type, wire::browser)
        .setAttribute(wire::subtype, popupType.c_str())
        .setAttribute(wire::show, wireBool(true));
    notice.addNode(wire::title).setAttribute(wire::value, content.title.c_str());

    XmlUICtrl browser = notice.addCtrl(UiCtrlType::WebBrowser, webControlId.c_str());
    browser.setAttribute(wire::operation, popupOperationLiteral(content.operation));
    setUnlessEmpty(browser, wire::start_url, content.startUrl);
    setUnlessEmpty(browser, wire::final_url, content.finalUrl);
    setUnlessEmpty(browser, wire::cookie_name, content.cookieName);
    browser.setAttribute(wire::focus, wireBool(true));
    setUnlessEmpty(browser, wire::user_agent, content.userAgent);

    const auto bind = [&](XmlUICtrl& control, UiCtrlEvent event, const char* parameter, EventStoreId kind) {
        if (kind != EventStoreId::EVENT_INVALID) {
            owner->Add(control.setEvent(event, parameter), kind, dialogId.c_str());
        }
    };
    if (content.operation == PopupOperation::BrowseForLocalContent ||
        content.operation == PopupOperation::DispatchEvent) {
        if (!content.dispatchName.empty() && !content.dispatchDetail.empty()) {
            browser.setAttribute(wire::event_dispatch_name, content.dispatchName.c_str())
                .setAttribute(wire::event_dispatch_detail, content.dispatchDetail.c_str());
        }
        bind(browser, UiCtrlEvent::OnBrowseEvent, webControlId.c_str(), content.onBrowseEvent);
    }
    if (content.disableControls) {
        browser.setAttribute(wire::disable_browser_controls, wireBool(true));
    }
    bind(browser, UiCtrlEvent::OnError, webControlId.c_str(), content.onError);
    bind(browser, UiCtrlEvent::OnPress, webControlId.c_str(), content.onPress);
    if (content.onClose != EventStoreId::EVENT_INVALID) {
        XmlUICtrl closeButton = notice.addCtrl(UiCtrlType::CloseButton, closeButtonId.c_str());
        bind(closeButton, UiCtrlEvent::OnClose, nullptr, content.onClose);
    }
    return notice.serialize();
}

std::string BrowserPopupHelper::generateBrowserPopupClose() {
    if (!isShown) {
        COMMON2_LOG(DBG_WARN, "BrowserPopupHelper::generateBrowserPopupClose")
            << "Can't close uninitialized popup with id " << dialogId;
        return {};
    }
    owner->Remove(dialogId.c_str());
    XmlUINotice notice(UiNoticeType::Popup, nullptr, pluginIdentity::identity);
    composePopupDisposal(notice, dialogId.c_str());
    return notice.serialize();
}

std::string BrowserPopupHelper::generateBrowserShowExisting() {
    if (!isShown) {
        COMMON2_LOG(DBG_WARN, "BrowserPopupHelper::generateBrowserShowExisting")
            << "Can't show uninitialized popup with id " << dialogId;
        return {};
    }
    XmlUINotice notice(UiNoticeType::Popup, nullptr, pluginIdentity::identity);
    notice.getRoot()
        .setAttribute(wire::id, dialogId.c_str())
        .setAttribute(wire::type, wire::browser)
        .setAttribute(wire::subtype, popupType.c_str())
        .setAttribute(wire::show, wireBool(true));
    return notice.serialize();
}
