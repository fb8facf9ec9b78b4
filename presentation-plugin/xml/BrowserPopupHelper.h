/// Browser popups: embedded browsers that the host opens on the plugin's word.
#pragma once

#include "presentation-plugin/xml/CEventStore.h"

#include <memory>
#include <string>

struct DataplaneAuthRequest_t;
struct EnrollmentAuthRequest_t;
struct WrenAlertList_t;

/// What the host's browser is to do.
enum class PopupOperation : std::uint32_t {
    BrowseForCookie = 0,
    Browse = 1,
    BrowseForLocalContent = 2,
    DispatchEvent = 3
};

/// The wire word of an operation; "browse" for a value outside the enumeration.
const char* popupOperationLiteral(PopupOperation operation) noexcept;

/// The identity of one browser popup, and the notices that open, refresh, re-show and close it. Each notice
/// is returned as text for the host; none is sent from here. One thread at a time.
class BrowserPopupHelper {
public:
    /// @param eventStore where the popup's events are entered while it is open
    /// @param popupType value of "subtype"
    /// @param dialogId id of the popup element
    BrowserPopupHelper(std::shared_ptr<CEventStore> eventStore, std::string popupType, std::string dialogId,
                       std::string webControlId, std::string closeButtonId);

    /// Opens the login for a held destination, until its end URL is reached and the cookie can be read.
    std::string generateDataplaneAuthPopup(const std::string& title, const std::string& userAgent,
                                           const DataplaneAuthRequest_t& request);
    /// Opens the login of an enrollment.
    std::string generateEnrollmentAuthPopup(const std::string& title, const std::string& userAgent,
                                            const EnrollmentAuthRequest_t& request);
    /// Turns the popup into the local progress page.
    /// @param message what the page says
    std::string generateEnrollmentProgressPopup(const std::string& title, const std::string& userAgent,
                                                const std::string& message);
    /// Opens the local alert page.
    std::string generateAlertPopup(const std::string& title, const std::string& userAgent,
                                   const WrenAlertList_t& alerts);
    /// Gives the open alert page other alerts.
    std::string generateAlertUpdate(const std::string& title, const WrenAlertList_t& alerts);

    /// Takes the popup off the screen and forgets its events. Empty before the first popup; afterwards always
    /// a notice, also for a popup that is long gone.
    std::string generateBrowserPopupClose();
    /// Brings the popup to the front. Empty before the first popup.
    std::string generateBrowserShowExisting();

private:
    /// What a popup is made of. An empty text leaves its attribute out, `EVENT_INVALID` binds nothing.
    struct Content {
        PopupOperation operation = PopupOperation::Browse;
        const std::string& title;
        std::string userAgent = {};
        std::string startUrl = {};
        std::string finalUrl = {};
        std::string cookieName = {};
        std::string dispatchName = {};
        std::string dispatchDetail = {};
        bool disableControls = false;
        EventStoreId onPress = EventStoreId::EVENT_INVALID;
        EventStoreId onError = EventStoreId::EVENT_INVALID;
        EventStoreId onClose = EventStoreId::EVENT_INVALID;
        EventStoreId onBrowseEvent = EventStoreId::EVENT_INVALID;
    };

    std::string generateBrowserPopup(const Content& content);

    std::shared_ptr<CEventStore> owner;
    bool isShown = false; ///< a popup has been generated; closing does not clear it
    std::string popupType;
    std::string dialogId;
    std::string webControlId;
    std::string closeButtonId;
};
