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
#include <cstddef>
#include <future>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <system_error>

struct AdvConfigSyncGroup;
struct AdvEnrollmentGroup;
class XmlUIEvent;

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
    bool alertListIsEmpty() const override;
    void actionRegisterCallbacks(std::uintptr_t hostHandle, IPresentationCB* presentationCB,
                                 ITranslator* translator) override;
    void actionUnregisterCallbacks() override;
    void actionStartApi() override;
    void actionStopApi() override;
    void actionInitUI() override;
    void actionNotifyUIStopDone() override;
    void actionApiInitiateEnrollment(const InitiateEnrollment_e& request) override;
    void actionApiInitiateReEnrollment(const InitiateReEnrollment_e& request) override;
    void actionApiEnrollmentAuthReply(const EnrollmentAuthReply_e& request) override;
    void actionApiCancelEnrollment(const CancelEnrollment_e& request) override;
    void actionApiDataplaneAuthReply(const DataplaneAuthReply_e& request) override;
    void actionApiInitiateUnenrollment(const InitiateUnenrollment_e& request) override;
    void actionApiPerformConfigSync(const PerformConfigSync_e& request) override;
    void actionApiTriggerPostureReports(const TriggerPostureReports_e& request) override;
    void actionDisplayApiErrorInternal() override;
    void actionCacheStatusNotificationAndUpdateUI(std::shared_ptr<const StatusNotification_t> notification,
                                                  bool& alertsPending) override;
    void
    actionCacheDataplaneNotificationAndUpdateUI(std::shared_ptr<const DataplaneNotification_t> notification,
                                                bool& alertsPending) override;
    void actionOnlyUpdateUI(bool& alertsPending) override;
    void actionOnlyCacheStatusNotification(std::shared_ptr<const StatusNotification_t> notification) override;
    void actionOnlyCacheDataplaneNotification(
        std::shared_ptr<const DataplaneNotification_t> notification) override;
    void actionDisplayEnrollmentStatusInternal(EnrollmentInternalStatus status) override;
    void actionDisplayEnrollmentStatus(const EnrollmentStatusNotification_t& notification) override;
    void actionDisplayEnrollmentAuthRequest(const EnrollmentAuthRequest_t& request) override;
    void actionDisplayDataplaneAuthRequest(const DataplaneAuthRequest_t& request) override;
    void actionDismissDataplaneAuth() override;
    void actionDisplayUnenrollmentStatusInternal(UnenrollmentInternalStatus status) override;
    void actionDisplayUnenrollmentStatus(const UnenrollmentStatusNotification_t& notification) override;
    void actionDisplayAlertDialog(AlertDialogAction action) override;
    void actionDismissAlertDialog() override;

    // The one way out to the host. None of these locks.
    bool notifyVTGUI(const char* xml);
    bool notifyVTGUI(const std::string& xml) { return notifyVTGUI(xml.c_str()); }
    bool sendNotice(const XmlUINotice& notice);
    bool sendApiLogNotice(const char* name, const char* text);
    /// Sends what `write` appends to the buffer that it is given.
    template <class Write>
    bool sendText(Write write);

    /// Raises an event under `smMutex`, which the caller holds, and warns in the name of `function` where the
    /// machine does not take it.
    /// @param line where that operation raises it
    /// @return whether the machine took it
    template <class Event>
    bool raise(const Event& event, std::string_view function, int line = __builtin_LINE());

    // What the user did: one route for each group of kinds. All are called with `smMutex` held.
    void routeEnroll();
    void routeCancelEnrollment();
    void routeUnenroll();
    void routeConfigSync();
    void routeEnrollmentCookie(const XmlUIEvent& event);
    void routeEnrollmentBrowserError(const XmlUIEvent& event);
    void routeDataplaneCookie(const XmlUIEvent& event);
    void routeDataplaneBrowserError(const XmlUIEvent& event);
    void routeDataplaneBrowserClose();
    void routeVerify();
    void routeLocalBrowseEvent(const XmlUIEvent& event);
    void routeDataplaneAuth(const std::string& contextId);
    bool routeLocked(EventStoreId kind, const XmlUIEvent& event);

    // Documents: parse, decode, copy to the host's log, raise the event.
    struct Intake;
    template <class Take>
    void takeIn(const char* json, const Intake& intake, Take take);
    template <class Decode>
    bool readDocument(std::string_view json, const Intake& intake, Decode decode);
    void copyToHostLog(const Intake& intake, std::string_view json);
    template <class Record>
    using Decoder = Record (*)(boost::json::value, std::error_code&);
    /// A document whose record goes with its event.
    template <class Event, class Record>
    void takeInEvent(const char* json, const Intake& intake, Decoder<Record> decode);
    /// A document whose record the machine's actions may leave in `cached`; `read` makes it, or null, from
    /// the text.
    template <class Event, class Record, class Read>
    void takeInCached(const char* json, const Intake& intake, const std::shared_ptr<const Record>& cached,
                      KnownText& known, Read read);

    void sendRequest(QuillApiResult (IQuillApi::*operation)(const char*), const std::string& request,
                     const char* failure, std::string_view function);

    // The screen that follows the latest records.
    void updateMainUi(const std::shared_ptr<const StatusNotification_t>& status,
                      const std::shared_ptr<const DataplaneNotification_t>& dataplane, bool showToast,
                      bool& alertsPending);
    void renderTile(UiNoticeType type, const TileContent& content);
    void renderInitTile();
    void renderGlobalError();
    void renderEnrolledTile(const Enrollment_t& enrollment, bool toast);
    void renderUnenrolledTile(const EnrollmentChoice_t& choice, bool toast);
    void initAdvEnrollmentGroup();
    void initAdvConfigSyncGroup();
    void updateAdvEnrollmentActive(bool notAllowed);
    void updateAdvEnrollmentInactive(bool managed);
    void updateAdvConfigSyncActive(QuillTimePoint lastSync);
    void updateAdvConfigSyncInactive();
    void sendAdvEnrollmentGroup(UiNoticeType type, const AdvEnrollmentGroup& group);
    void sendAdvConfigSyncGroup(UiNoticeType type, const AdvConfigSyncGroup& group);
    void initStatsOverview();
    void initStatsDetails();
    bool renderStatsUpdates(const StatusNotification_t* status);

    // Transient windows.
    void showToast(const char* title, const char* text, ToastButton button);
    void showErrorPopup(const std::string& header, const std::string& details);
    void closeErrorPopup();
    void closePopup(BrowserPopupHelper& popup);

    // Progress.
    void displayEnrollmentProgress(UiTrayState trayState, WrenEnrollmentStringId stringId, bool showError,
                                   bool showProgressPopup);
    void displayUnenrollmentProgress(UiTrayState trayState, WrenUnenrollmentStringId stringId,
                                     bool showError);
    void displayEnrollmentCompletion(EnrollmentSubstatus substatus);
    void congratulate();

    std::mutex smMutex;             ///< guards what follows, save what has a lock of its own
    HostCallbacks host;             ///< has a lock of its own
    std::future<void> selfReleased; ///< ready when nobody holds `self` any more
    std::shared_ptr<PresentationPluginImpl>
        self; ///< this object, not owned; what the backend's pointers share
    std::weak_ptr<IQuillApiFactory> apiFactory;
    std::shared_ptr<IQuillApi> api; ///< while started
    PresentationPluginMachine sm;
    std::string clientDescription; ///< user agent of the browser popups
    QuillTimePoint alertTime = 0;  ///< time stamp of table alerts; never assigned, so that two derivations
                                   ///< from the same records are equal
    std::shared_ptr<const StatusNotification_t> cachedStatus;
    std::shared_ptr<const DataplaneNotification_t> cachedDataplane;
    StatusRecords statusRecords;  ///< of which `cachedStatus` is one
    KnownText knownStatusText;    ///< that `cachedStatus` came from
    KnownText knownDataplaneText; ///< that `cachedDataplane` came from
    alignas(
        std::max_align_t) std::array<unsigned char, 16 * 1024> parseMemory; ///< enough for usual documents
    std::string currentEnrollmentId;           ///< empty: no enrollment in progress
    std::string currentDataplaneAuthContextId; ///< empty: no dataplane authentication in progress
    std::string currentUnenrollmentId;         ///< empty: no unenrollment in progress
    std::string tileStatusText;                ///< last status text of the tile
    ErrorPopupState errorPopups;               ///< has a lock of its own
    std::shared_ptr<CEventStore> eventStore;   ///< has a lock of its own
    BrowserPopupHelper alertBrowserPopup;
    BrowserPopupHelper enrollmentBrowserPopup;
    BrowserPopupHelper dataplaneAuthBrowserPopup;
    WrenAlertList_t alerts;
    PreparedScreens screens;
    SpareText spareText; ///< any thread may borrow it
};

template <class Write>
bool PresentationPluginImpl::sendText(Write write) {
    const SpareText::Loan text(spareText);
    write(*text);
    return notifyVTGUI(text->c_str());
}
