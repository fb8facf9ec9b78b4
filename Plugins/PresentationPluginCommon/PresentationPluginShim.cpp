#include "Plugins/PresentationPluginCommon/PresentationPluginShim.h"

#include "Plugins/PresentationPluginCommon/PresentationPluginLog.h"

#include <exception>

namespace {

constexpr std::uint32_t reasonCount = 2;
constexpr int neededVersion = 3;

/// Calls `operation` with the shim behind `handle`.
/// @param function by which a fault is logged
/// @return the operation's result; `refused` for a null handle and where the operation throws, which a C host
///         could not take
template <class Result, class Operation>
Result withShim(void* handle, const char* function, Result refused, Operation operation) noexcept {
    if (!handle) {
        PRESENTATION_PLUGIN_LOG(presentationPluginLogError, function, "NULL shim handle");
        return refused;
    }
    try {
        return operation(*static_cast<CPresentationPluginShim*>(handle));
    } catch (const std::exception& failure) {
        PRESENTATION_PLUGIN_LOG(presentationPluginLogError, function, "%s", failure.what());
    } catch (...) {
        PRESENTATION_PLUGIN_LOG(presentationPluginLogError, function, "unknown exception");
    }
    return refused;
}

/// A result as the record's functions return it.
constexpr std::int32_t failed = presentationFailed;

} // namespace

CPresentationPluginShim::CPresentationPluginShim(bool& isCreated) {
    constexpr const char* function = "CPresentationPluginShim::CPresentationPluginShim";
    Plugin* const created = CreatePlugin(presentationInterfaceName);
    if (created && created->SupportsInterface(presentationInterfaceName, neededVersion)) {
        plugin = static_cast<IPresentationPluginV3*>(created);
    } else if (created) {
        DisposePlugin(created);
    }
    isCreated = plugin != nullptr;
    if (isCreated) {
        PRESENTATION_PLUGIN_LOG(presentationPluginLogInformation, function,
                                "Leveraging C++ Plugin interface within C based Plugin interface shim");
    } else {
        PRESENTATION_PLUGIN_LOG(presentationPluginLogError, function, "CreatePlugin failed");
    }
}

CPresentationPluginShim::~CPresentationPluginShim() {
    if (plugin && !DisposePlugin(plugin)) {
        PRESENTATION_PLUGIN_LOG(presentationPluginLogError,
                                "CPresentationPluginShim::~CPresentationPluginShim", "DisposePlugin failed");
    }
}

bool CPresentationPluginShim::SupportsInterface(void* handle, const char* name, int version) {
    return withShim(handle, "CPresentationPluginShim::SupportsInterface", false,
                    [&](auto& shim) { return shim.plugin->SupportsInterface(name, version); });
}

std::int32_t CPresentationPluginShim::Register(void* handle, const char* arguments, std::uintptr_t hostHandle,
                                               PresentationCbasedCallbacks* callbacks,
                                               TranslatorCbasedCallbacks* translator) {
    return withShim(handle, "CPresentationPluginShim::Register", failed, [&](auto& shim) {
        shim.presentationCallbacks = callbacks;
        shim.translatorCallbacks = translator;
        return shim.plugin->Register(arguments, hostHandle, &shim, &shim);
    });
}

std::int32_t CPresentationPluginShim::Start(void* handle) {
    return withShim(handle, "CPresentationPluginShim::Start", failed,
                    [](auto& shim) { return shim.plugin->Start(); });
}

std::int32_t CPresentationPluginShim::Stop(void* handle, std::uint32_t reason) {
    constexpr const char* function = "CPresentationPluginShim::Stop";
    return withShim(handle, function, failed, [&](auto& shim) {
        if (reason >= reasonCount) {
            PRESENTATION_PLUGIN_LOG(presentationPluginLogError, function, "Reason out of range");
            return failed;
        }
        return shim.plugin->Stop(reason);
    });
}

std::int32_t CPresentationPluginShim::Unregister(void* handle) {
    return withShim(handle, "CPresentationPluginShim::Unregister", failed, [](auto& shim) {
        const std::int32_t result = shim.plugin->Unregister();
        if (result == presentationDone) {
            shim.presentationCallbacks = nullptr;
            shim.translatorCallbacks = nullptr;
        }
        return result;
    });
}

bool CPresentationPluginShim::IsUIEnabled(void* handle) {
    return withShim(handle, "CPresentationPluginShim::IsUIEnabled", false,
                    [](auto& shim) { return shim.plugin->IsUIEnabled(); });
}

std::int32_t CPresentationPluginShim::GetIdentity(void* handle, char* buffer, std::uint32_t* size) {
    return withShim(handle, "CPresentationPluginShim::GetIdentity", failed,
                    [&](auto& shim) { return shim.plugin->GetIdentity(buffer, size); });
}

std::int32_t CPresentationPluginShim::GetLabel(void* handle, char* buffer, std::uint32_t* size) {
    return withShim(handle, "CPresentationPluginShim::GetLabel", failed,
                    [&](auto& shim) { return shim.plugin->GetLabel(buffer, size); });
}

std::int32_t CPresentationPluginShim::GetDisplayVersion(void* handle, char* buffer, std::uint32_t* size) {
    return withShim(handle, "CPresentationPluginShim::GetDisplayVersion", failed,
                    [&](auto& shim) { return shim.plugin->GetDisplayVersion(buffer, size); });
}

std::int32_t CPresentationPluginShim::Encrypt(void* handle, std::uintptr_t first, std::uintptr_t second,
                                              std::uintptr_t third, std::uintptr_t fourth) {
    return withShim(handle, "CPresentationPluginShim::Encrypt", failed,
                    [&](auto& shim) { return shim.plugin->Encrypt(first, second, third, fourth); });
}

std::int32_t CPresentationPluginShim::Decrypt(void* handle, std::uintptr_t first, std::uintptr_t second,
                                              char* output, std::uint32_t* outputSize) {
    return withShim(handle, "CPresentationPluginShim::Decrypt", failed,
                    [&](auto& shim) { return shim.plugin->Decrypt(first, second, output, outputSize); });
}

std::int32_t CPresentationPluginShim::EventNotification(void* handle, const char* xml) {
    return withShim(handle, "CPresentationPluginShim::EventNotification", failed,
                    [&](auto& shim) { return shim.plugin->EventNotification(xml); });
}

bool CPresentationPluginShim::IsMultiUserModeEnabled(void* handle) {
    return withShim(handle, "CPresentationPluginShim::IsMultiUserModeEnabled", false,
                    [](auto& shim) { return shim.plugin->IsMultiUserModeEnabled(); });
}

std::int32_t CPresentationPluginShim::GetPendingApprovalData(void* handle, std::uintptr_t first,
                                                             std::uintptr_t second) {
    return withShim(handle, "CPresentationPluginShim::GetPendingApprovalData", failed,
                    [&](auto& shim) { return shim.plugin->GetPendingApprovalData(first, second); });
}

std::int32_t CPresentationPluginShim::ApprovalEventNotification(void* handle, std::uintptr_t first) {
    return withShim(handle, "CPresentationPluginShim::ApprovalEventNotification", failed,
                    [&](auto& shim) { return shim.plugin->ApprovalEventNotification(first); });
}

std::int32_t CPresentationPluginShim::Notify(std::uintptr_t hostHandle, const char* xml) {
    const PresentationCbasedCallbacks* host = presentationCallbacks;
    return host ? host->Notify(host->context, hostHandle, xml) : presentationDone;
}

std::int32_t CPresentationPluginShim::StopDone(std::uintptr_t hostHandle) {
    const PresentationCbasedCallbacks* host = presentationCallbacks;
    return host ? host->StopDone(host->context, hostHandle) : presentationDone;
}

std::int32_t CPresentationPluginShim::TranslatorOperation1(std::uintptr_t first, std::uintptr_t second,
                                                           std::uintptr_t third) {
    const TranslatorCbasedCallbacks* host = translatorCallbacks;
    return host ? host->TranslatorOperation1(host->context, first, second, third) : failed;
}

std::int32_t CPresentationPluginShim::TranslatorOperation2(std::uintptr_t first, std::uintptr_t second,
                                                           std::uintptr_t third) {
    const TranslatorCbasedCallbacks* host = translatorCallbacks;
    return host ? host->TranslatorOperation2(host->context, first, second, third) : failed;
}
