/// The one object of the plugin. It faces three ways at once: towards the host (the plugin interface),
/// towards the backend (the callbacks that the backend drives) and towards its own machine (the action
/// slots). It decides nothing by itself: each input becomes an event of the machine, each reaction an action.
///
/// The members are grouped by subject into translation units:
/// - PresentationPluginImpl.cpp: life, the host's operations, the one way out to the host
/// - PresentationPluginImplHostEvents.cpp: what the user did becomes a machine event
/// - PresentationPluginImplBackendIntake.cpp: documents become records and machine events
/// - PresentationPluginImplBackendCommands.cpp: requests to the backend
/// - PresentationPluginImplMainUi.cpp: caching, and the screen that follows the latest records
/// - PresentationPluginImplProgress.cpp: the screen while an enrollment or unenrollment runs; dialogs
#pragma once

#include "common2/util/LentObject.h"
#include "common2/util/Mutex.h"
#include "presentation-plugin/ErrorPopupState.h"
#include "presentation-plugin/HostCallbacks.h"
#include "presentation-plugin/KnownText.h"
#include "presentation-plugin/PresentationPluginSm.h"
#include "presentation-plugin/SpareText.h"
#include "presentation-plugin/StatusRecords.h"
#include "presentation-plugin/alerts/WrenAlert.h"
#include "presentation-plugin/tables/WrenEnrollmentStringTable.h"
#include "presentation-plugin/tables/WrenUnenrollmentStringTable.h"
#include "presentation-plugin/xml/BrowserPopupHelper.h"
#include "presentation-plugin/xml/CEventStore.h"
#include "presentation-plugin/xml/PreparedScreens.h"
#include "presentation-plugin/xml/TileComposition.h"
#include "presentation-plugin/xml/ToastComposition.h"
#include "wren/PresentationPlugin.h"
#include "wren/QuillApi.h"

#include <boost/json/fwd.hpp>

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <system_error>
#include <type_traits>

struct AdvConfigSyncGroup;
struct AdvEnrollmentGroup;
class XmlUIEvent;

/// Said of what runs under the plugin's mutex; clang holds the sources to it.
#define WHILE_LOCKED COMMON2_REQUIRES(smMutex)
#define GUARDED COMMON2_GUARDED_BY(smMutex)

/// Host calls arrive on host threads, backend callbacks on threads of the backend library. One mutex
/// serialises them: whoever raises an event runs the machine, all its actions, all rendering and all calls to
/// host and backend on its own thread under it. Outside it run only the text getters, the inert operations,
/// the first steps of `EventNotification`, and the closing of the error popup.
class PresentationPluginImpl final : public IPresentationPluginV3,
                                     public IQuillApiCallbacks,
                                     private IPresentationPluginSmCallbacks {
public:
    /// @param factory makes the backend's API object at every start; not contacted here
    explicit PresentationPluginImpl(const std::weak_ptr<IQuillApiFactory>& factory);
    PresentationPluginImpl(const PresentationPluginImpl&) = delete;
    PresentationPluginImpl& operator=(const PresentationPluginImpl&) = delete;

    /// Stops and unregisters where the host has not, then waits for backend callbacks that are still inside.
    ~PresentationPluginImpl() override;

    // The host's side.
    bool SupportsInterface(const char* name, int version) override;
    std::int32_t Register(const char* arguments, std::uintptr_t hostHandle, IPresentationCB* presentationCB,
                          ITranslator* translator) override;
    std::int32_t Start() override;
    std::int32_t Stop(std::uint32_t reason) override;
    std::int32_t Unregister() override;
    bool IsUIEnabled() override;
    std::int32_t GetIdentity(char* buffer, std::uint32_t* size) override;
    std::int32_t GetLabel(char* buffer, std::uint32_t* size) override;
    std::int32_t GetDisplayVersion(char* buffer, std::uint32_t* size) override;
    std::int32_t Encrypt(std::uintptr_t first, std::uintptr_t second, std::uintptr_t third,
                         std::uintptr_t fourth) override;
    std::int32_t Decrypt(std::uintptr_t first, std::uintptr_t second, char* output,
                         std::uint32_t* outputSize) override;
    std::int32_t EventNotification(const char* xml) override;
    bool IsMultiUserModeEnabled() override;
    std::int32_t GetPendingApprovalData(std::uintptr_t first, std::uintptr_t second) override;
    std::int32_t ApprovalEventNotification(std::uintptr_t first) override;

    // The backend's side.
    void StatusNotification(const char* json) override;
    void EnrollmentStatusNotification(const char* json) override;
    void EnrollmentAuthRequest(const char* json) override;
    void UnenrollmentStatusNotification(const char* json) override;
    void DataplaneNotification(const char* json) override;

private:
    // The machine's side.
    bool alertListIsEmpty() const override WHILE_LOCKED;
    void actionRegisterCallbacks(std::uintptr_t hostHandle, IPresentationCB* presentationCB,
                                 ITranslator* translator) override WHILE_LOCKED;
    void actionUnregisterCallbacks() override WHILE_LOCKED;
    void actionStartApi() override WHILE_LOCKED;
    void actionStopApi() override WHILE_LOCKED;
    void actionInitUI() override WHILE_LOCKED;
    void actionNotifyUIStopDone() override WHILE_LOCKED;
    void actionApiInitiateEnrollment(const InitiateEnrollment_e& request) override WHILE_LOCKED;
    void actionApiInitiateReEnrollment(const InitiateReEnrollment_e& request) override WHILE_LOCKED;
    void actionApiEnrollmentAuthReply(const EnrollmentAuthReply_e& request) override WHILE_LOCKED;
    void actionApiCancelEnrollment(const CancelEnrollment_e& request) override WHILE_LOCKED;
    void actionApiDataplaneAuthReply(const DataplaneAuthReply_e& request) override WHILE_LOCKED;
    void actionApiInitiateUnenrollment(const InitiateUnenrollment_e& request) override WHILE_LOCKED;
    void actionApiPerformConfigSync(const PerformConfigSync_e& request) override WHILE_LOCKED;
    void actionApiTriggerPostureReports(const TriggerPostureReports_e& request) override WHILE_LOCKED;
    void actionDisplayApiErrorInternal() override WHILE_LOCKED;
    void actionCacheStatusNotificationAndUpdateUI(std::shared_ptr<const StatusNotification_t> notification,
                                                  bool& alertsPending) override WHILE_LOCKED;
    void
    actionCacheDataplaneNotificationAndUpdateUI(std::shared_ptr<const DataplaneNotification_t> notification,
                                                bool& alertsPending) override WHILE_LOCKED;
    void actionOnlyUpdateUI(bool& alertsPending) override WHILE_LOCKED;
    void actionOnlyCacheStatusNotification(std::shared_ptr<const StatusNotification_t> notification) override
        WHILE_LOCKED;
    void actionOnlyCacheDataplaneNotification(
        std::shared_ptr<const DataplaneNotification_t> notification) override WHILE_LOCKED;
    void actionDisplayEnrollmentStatusInternal(EnrollmentInternalStatus status) override WHILE_LOCKED;
    void
    actionDisplayEnrollmentStatus(const EnrollmentStatusNotification_t& notification) override WHILE_LOCKED;
    void actionDisplayEnrollmentAuthRequest(const EnrollmentAuthRequest_t& request) override WHILE_LOCKED;
    void actionDisplayDataplaneAuthRequest(const DataplaneAuthRequest_t& request) override WHILE_LOCKED;
    void actionDismissDataplaneAuth() override WHILE_LOCKED;
    void actionDisplayUnenrollmentStatusInternal(UnenrollmentInternalStatus status) override WHILE_LOCKED;
    void actionDisplayUnenrollmentStatus(const UnenrollmentStatusNotification_t& notification) override
        WHILE_LOCKED;
    void actionDisplayAlertDialog(AlertDialogAction action) override WHILE_LOCKED;
    void actionDismissAlertDialog() override WHILE_LOCKED;

    // The one way out to the host. None of these locks.
    bool notifyVTGUI(const char* xml);
    bool notifyVTGUI(const std::string& xml) { return notifyVTGUI(xml.c_str()); }
    bool sendNotice(const XmlUINotice& notice);
    /// Sends the prepared screen that `write` writes of what it is told.
    template <class... Told>
    void sendPrepared(void (PreparedScreens::*write)(common2::TextBuffer&, Told...),
                      std::type_identity_t<Told>... told) WHILE_LOCKED;
    /// Copies a text to the host's log, as an element of that name.
    void sendApiLogNotice(std::string_view element, std::string_view text) WHILE_LOCKED;

    /// Raises an event under `smMutex`, which the caller holds, and warns in the name of `function` where the
    /// machine does not take it.
    /// @param file with `line` where that operation raises it
    /// @return whether the machine took it
    template <class Event>
    bool raise(const Event& event, std::string_view function, const char* file = __builtin_FILE(),
               int line = __builtin_LINE()) WHILE_LOCKED;

    // What the user did: one route for each group of kinds.
    void routeEnroll() WHILE_LOCKED;
    void routeCancelEnrollment() WHILE_LOCKED;
    void routeUnenroll() WHILE_LOCKED;
    void routeConfigSync() WHILE_LOCKED;
    void routeEnrollmentCookie(const XmlUIEvent& event) WHILE_LOCKED;
    void routeEnrollmentBrowserError(const XmlUIEvent& event) WHILE_LOCKED;
    void routeDataplaneCookie(const XmlUIEvent& event) WHILE_LOCKED;
    void routeDataplaneBrowserError(const XmlUIEvent& event) WHILE_LOCKED;
    void routeDataplaneBrowserClose() WHILE_LOCKED;
    void routeVerify() WHILE_LOCKED;
    void routeLocalBrowseEvent(const XmlUIEvent& event) WHILE_LOCKED;
    void routeDataplaneAuth(const std::string& contextId) WHILE_LOCKED;
    bool routeLocked(EventStoreId kind, const XmlUIEvent& event) WHILE_LOCKED;

    // Documents: parse, decode, copy to the host's log, raise the event.
    struct Intake;
    template <class Decode>
    bool readDocument(std::string_view json, const Intake& intake, Decode decode) WHILE_LOCKED;
    template <class Record>
    using Decoder = Record (*)(boost::json::value, std::error_code&);
    /// A document whose record goes with its event.
    template <class Event, class Record>
    void takeInEvent(const char* json, const Intake& intake, Decoder<Record> decode);
    /// A document whose record the machine's actions may keep in `cached`. Where the text is not that of the
    /// cached record, `read` makes a new one, or null.
    template <class Event, class Record>
    void takeInCached(const char* json, const Intake& intake,
                      std::shared_ptr<const Record> PresentationPluginImpl::*cached,
                      KnownText PresentationPluginImpl::*knownText,
                      std::shared_ptr<const Record> (PresentationPluginImpl::*read)(std::string_view,
                                                                                    const Intake&));
    std::shared_ptr<const StatusNotification_t> readStatus(std::string_view json,
                                                           const Intake& intake) WHILE_LOCKED;
    std::shared_ptr<const DataplaneNotification_t> readDataplane(std::string_view json,
                                                                 const Intake& intake) WHILE_LOCKED;

    void sendRequest(QuillApiResult (IQuillApi::*operation)(const char*), const std::string& request,
                     const char* failure, std::string_view function) WHILE_LOCKED;

    // The screen that follows the latest records.
    void updateMainUi(const std::shared_ptr<const StatusNotification_t>& status,
                      const std::shared_ptr<const DataplaneNotification_t>& dataplane, bool showToast,
                      bool& alertsPending) WHILE_LOCKED;
    void renderTile(UiNoticeType type, const TileContent& content) WHILE_LOCKED;
    void renderInitTile() WHILE_LOCKED;
    void renderGlobalError() WHILE_LOCKED;
    void renderEnrolledTile(const Enrollment_t& enrollment, bool toast) WHILE_LOCKED;
    void renderUnenrolledTile(const EnrollmentChoice_t& choice, bool toast) WHILE_LOCKED;
    void initAdvEnrollmentGroup() WHILE_LOCKED;
    void initAdvConfigSyncGroup() WHILE_LOCKED;
    void updateAdvEnrollmentActive(bool notAllowed) WHILE_LOCKED;
    void updateAdvEnrollmentInactive(bool managed) WHILE_LOCKED;
    void updateAdvConfigSyncActive(QuillTimePoint lastSync) WHILE_LOCKED;
    void updateAdvConfigSyncInactive() WHILE_LOCKED;
    void sendAdvEnrollmentGroup(UiNoticeType type, const AdvEnrollmentGroup& group) WHILE_LOCKED;
    void sendAdvConfigSyncGroup(UiNoticeType type, const AdvConfigSyncGroup& group) WHILE_LOCKED;
    void initStatsOverview() WHILE_LOCKED;
    void initStatsDetails() WHILE_LOCKED;
    bool renderStatsUpdates(const StatusNotification_t* status) WHILE_LOCKED;

    // Transient windows.
    void showToast(const char* title, const char* text, ToastButton button) WHILE_LOCKED;
    void showErrorPopup(const std::string& header, const std::string& details) WHILE_LOCKED;
    void closeErrorPopup();
    void closePopup(BrowserPopupHelper& popup) WHILE_LOCKED;

    // Progress.
    void displayEnrollmentProgress(UiTrayState trayState, WrenEnrollmentStringId stringId, bool showError,
                                   bool showProgressPopup) WHILE_LOCKED;
    void displayUnenrollmentProgress(UiTrayState trayState, WrenUnenrollmentStringId stringId,
                                     bool showError) WHILE_LOCKED;
    void displayEnrollmentCompletion(EnrollmentSubstatus substatus) WHILE_LOCKED;
    void congratulate() WHILE_LOCKED;

    common2::Mutex smMutex;                       ///< the one mutex
    HostCallbacks host;                           ///< has a lock of its own
    common2::LentObject<IQuillApiCallbacks> self; ///< to the backend
    std::weak_ptr<IQuillApiFactory> apiFactory GUARDED;
    std::shared_ptr<IQuillApi> api GUARDED; ///< while started
    PresentationPluginMachine sm GUARDED;
    std::string clientDescription GUARDED; ///< user agent of the browser popups
    QuillTimePoint alertTime GUARDED = 0;  ///< time stamp of table alerts; never assigned, so that two
                                           ///< derivations from the same records are equal
    std::shared_ptr<const StatusNotification_t> cachedStatus GUARDED;
    std::shared_ptr<const DataplaneNotification_t> cachedDataplane GUARDED;
    StatusRecords statusRecords GUARDED;  ///< of which `cachedStatus` is one
    KnownText knownStatusText GUARDED;    ///< that `cachedStatus` came from
    KnownText knownDataplaneText GUARDED; ///< that `cachedDataplane` came from
    alignas(std::uint64_t)
        std::array<unsigned char, 16 * 1024> parseMemory GUARDED; ///< enough for usual documents
    std::string currentEnrollmentId GUARDED;                      ///< empty: no enrollment in progress
    std::string currentDataplaneAuthContextId GUARDED; ///< empty: no dataplane authentication in progress
    std::string currentUnenrollmentId GUARDED;         ///< empty: no unenrollment in progress
    std::string tileStatusText GUARDED;                ///< last status text of the tile
    ErrorPopupState errorPopups;                       ///< has a lock of its own
    std::shared_ptr<CEventStore> eventStore;           ///< has a lock of its own
    BrowserPopupHelper alertBrowserPopup GUARDED;
    BrowserPopupHelper enrollmentBrowserPopup GUARDED;
    BrowserPopupHelper dataplaneAuthBrowserPopup GUARDED;
    WrenAlertList_t alerts GUARDED;
    PreparedScreens screens GUARDED;
    SpareText spareText; ///< any thread may borrow it
};

template <class... Told>
void PresentationPluginImpl::sendPrepared(void (PreparedScreens::*write)(common2::TextBuffer&, Told...),
                                          std::type_identity_t<Told>... told) {
    const SpareText::Loan text(spareText);
    (screens.*write)(*text, told...);
    notifyVTGUI(text->c_str());
}

#undef GUARDED
#undef WHILE_LOCKED
