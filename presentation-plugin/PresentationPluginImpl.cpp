#include "presentation-plugin/PresentationPluginImpl.h"

#include "common/PluginIdentity.h"
#include "common/tessel/TesselClientRetriever.h"
#include "presentation-plugin/PresentationPluginImplRaise.h"
#include "wren/Plugin.h"
#include "xml/XmlUINotice.h"

#include <cstring>

namespace {

/// Copies a text out by the contract of the text getters.
/// @param size of the buffer in bytes; receives what the text needs with its zero if that is more
/// @return the getter's result
std::int32_t copyText(std::string_view text, char* buffer, std::uint32_t* size) {
    if (!size) {
        return presentationFailed;
    }
    const auto needed = static_cast<std::uint32_t>(text.size() + 1);
    if (!buffer || *size < needed) {
        *size = needed;
        return presentationBufferTooSmall;
    }
    std::memcpy(buffer, text.data(), text.size());
    buffer[text.size()] = '\0';
    return presentationDone;
}

/// A lifecycle line: what happens to the plugin, and which version it is.
/// @param function in whose name it is written
/// @param line of the statement that calls this
void logLife(Common2LogSeverity severity, std::string_view happening, std::string_view function,
             int line = __builtin_LINE()) {
    COMMON2_LOG_AT(severity, common2::sourceName(__FILE__), line, function)
        << happening << " WREN Presentation Plugin Version '" << pluginIdentity::version << '\'';
}

/// The user agent of the browser popups.
std::string describeClient() {
    std::string description = pluginIdentity::suiteAndLabel;
    description.append(" ").append(pluginIdentity::version);
    return description.append(" (").append(TesselClientRetriever().getOs()).append(")");
}

} // namespace

PresentationPluginImpl::PresentationPluginImpl(const std::weak_ptr<IQuillApiFactory>& factory)
    : self(*this)
    , apiFactory(factory)
    , sm(static_cast<IPresentationPluginSmCallbacks&>(*this), quillSmlLogger())
    , eventStore(std::make_shared<CEventStore>())
    , alertBrowserPopup(eventStore, "wren_alert_browser", "quill_alert_browser_dialog",
                        "quill_alert_browser_web_control", "quill_alert_browser_close_btn")
    , enrollmentBrowserPopup(eventStore, "wren_auth_browser", "quill_enrollment_browser_dialog",
                             "quill_enrollment_browser_web_control", "quill_enrollment_browser_close_btn")
    , dataplaneAuthBrowserPopup(eventStore, "wren_auth_browser", "quill_dataplane_auth_browser_dialog",
                                "quill_dataplane_auth_browser_web_control",
                                "quill_dataplane_auth_browser_close_btn") {
    logLife(DBG_TRACE, "Created", "PresentationPluginImpl::PresentationPluginImpl");
    clientDescription = describeClient();
}

PresentationPluginImpl::~PresentationPluginImpl() {
    constexpr std::string_view function = "PresentationPluginImpl::~PresentationPluginImpl";
    {
        const common2::MutexLock lock(smMutex);
        logLife(DBG_TRACE, "Destroying", function);
        if (sm.is(sml::state<Started_s>)) {
            raise(Stop_e{}, function);
        }
        if (sm.is(sml::state<Registered_s>)) {
            raise(Unregister_e{}, function);
        }
        logLife(DBG_TRACE, "Destroyed", function);
    }
    // The backend locks its weak pointer around each call, so an object without owners has no thread inside.
    // No thread of the backend runs code of the module later for it: the host may unload the module now.
    self.end();
}

bool PresentationPluginImpl::SupportsInterface(const char* name, int version) {
    if (!name || version < 1 || version > 3) {
        return false;
    }
    const std::string_view wanted(name);
    return wanted == presentationInterfaceName || wanted == cBasedPresentationInterfaceName;
}

std::int32_t PresentationPluginImpl::Register(const char* arguments, std::uintptr_t hostHandle,
                                              IPresentationCB* presentationCB, ITranslator* translator) {
    constexpr std::string_view function = "PresentationPluginImpl::Register";
    const common2::MutexLock lock(smMutex);
    if (!arguments) {
        COMMON2_LOG(DBG_ERROR, function) << "Arguments string is NULL";
        return presentationNullArgument;
    }
    if (!presentationCB) {
        COMMON2_LOG(DBG_ERROR, function) << "Presentation callback pointer is NULL";
        return presentationNullArgument;
    }
    if (!translator) {
        COMMON2_LOG(DBG_ERROR, function) << "Translator callback pointer is NULL";
        return presentationNullArgument;
    }
    logLife(DBG_TRACE, "Registering", function);
    return raise(Register_e{hostHandle, presentationCB, translator}, function) ? presentationDone
                                                                               : presentationFailed;
}

std::int32_t PresentationPluginImpl::Start() {
    constexpr std::string_view function = "PresentationPluginImpl::Start";
    const common2::MutexLock lock(smMutex);
    logLife(DBG_INFO, "Starting", function);
    if (!raise(Start_e{}, function)) {
        return presentationFailed;
    }
    // The machine also takes a failed start: it goes back and shows the error.
    return sm.is(sml::state<Started_s>) ? presentationDone : presentationFailed;
}

std::int32_t PresentationPluginImpl::Stop(std::uint32_t) {
    constexpr std::string_view function = "PresentationPluginImpl::Stop";
    const common2::MutexLock lock(smMutex);
    logLife(DBG_INFO, "Stopping", function);
    return raise(Stop_e{}, function) ? presentationDone : presentationFailed;
}

std::int32_t PresentationPluginImpl::Unregister() {
    constexpr std::string_view function = "PresentationPluginImpl::Unregister";
    const common2::MutexLock lock(smMutex);
    logLife(DBG_TRACE, "Unregistering", function);
    return raise(Unregister_e{}, function) ? presentationDone : presentationFailed;
}

bool PresentationPluginImpl::IsUIEnabled() { return true; }

std::int32_t PresentationPluginImpl::GetIdentity(char* buffer, std::uint32_t* size) {
    return copyText(pluginIdentity::identity, buffer, size);
}

std::int32_t PresentationPluginImpl::GetLabel(char* buffer, std::uint32_t* size) {
    return copyText(pluginIdentity::label, buffer, size);
}

std::int32_t PresentationPluginImpl::GetDisplayVersion(char* buffer, std::uint32_t* size) {
    return copyText(pluginIdentity::version, buffer, size);
}

std::int32_t PresentationPluginImpl::Encrypt(std::uintptr_t, std::uintptr_t, std::uintptr_t, std::uintptr_t) {
    return presentationEncryptUnavailable;
}

std::int32_t PresentationPluginImpl::Decrypt(std::uintptr_t, std::uintptr_t, char* output,
                                             std::uint32_t* outputSize) {
    if (output) {
        *output = '\0';
    }
    if (outputSize) {
        *outputSize = 0;
    }
    return presentationNotProvided;
}

bool PresentationPluginImpl::IsMultiUserModeEnabled() { return true; }

std::int32_t PresentationPluginImpl::GetPendingApprovalData(std::uintptr_t, std::uintptr_t) {
    return presentationNotProvided;
}

std::int32_t PresentationPluginImpl::ApprovalEventNotification(std::uintptr_t) {
    return presentationNotProvided;
}

void PresentationPluginImpl::actionRegisterCallbacks(std::uintptr_t hostHandle,
                                                     IPresentationCB* presentationCB,
                                                     ITranslator* translator) {
    host.set({hostHandle, presentationCB, translator});
}

void PresentationPluginImpl::actionUnregisterCallbacks() { host.set({}); }

void PresentationPluginImpl::actionNotifyUIStopDone() {
    host.get().stopDone("PresentationPluginImpl::actionNotifyUIStopDone");
}

bool PresentationPluginImpl::notifyVTGUI(const char* xml) {
    const HostCallbacks::Snapshot registered = host.get();
    if (!registered.presentationCB) {
        COMMON2_LOG(DBG_ERROR, "PresentationPluginImpl::notifyVTGUI") << "UI callbacks not initialized";
        return false;
    }
    if (!*xml) {
        COMMON2_LOG(DBG_ERROR, "PresentationPluginImpl::notifyVTGUI") << "Empty UI notice";
        return false;
    }
    registered.notify(xml, "PresentationPluginImpl::notifyVTGUI");
    return true;
}

bool PresentationPluginImpl::sendNotice(const XmlUINotice& notice) {
    const SpareText::Loan text(spareText);
    notice.print(*text);
    return notifyVTGUI(text->c_str());
}

void PresentationPluginImpl::sendApiLogNotice(std::string_view element, std::string_view text) {
    sendPrepared(&PreparedScreens::apiLog, element, text);
}
