/// What stands between a host that speaks C and a plugin that speaks C++.
#pragma once

#include "wren/PresentationPlugin.h"
#include "wren/PresentationPluginCbased.h"

#include <atomic>
#include <cstdint>

/// Towards the plugin the host's two interfaces, towards the C host an opaque handle. It knows the plugin's
/// interface and nothing of what a plugin does.
///
/// The operations of the record forward to the plugin's operations of the same names and return their
/// results. They may be called from any thread, hold no lock, and take a null handle for an error, which they
/// log and answer with `presentationFailed` or false. An exception ends in them the same way.
class CPresentationPluginShim : IPresentationCB, ITranslator {
public:
    /// Makes a plugin by the module's own `CreatePlugin`.
    /// @param isCreated receives whether there is one; if not, the log explains it
    explicit CPresentationPluginShim(bool& isCreated);
    CPresentationPluginShim(const CPresentationPluginShim&) = delete;
    CPresentationPluginShim& operator=(const CPresentationPluginShim&) = delete;
    /// Disposes of the plugin, which may call back `StopDone` meanwhile.
    ~CPresentationPluginShim() override;

    static bool SupportsInterface(void* handle, const char* name, int version);
    /// Stores the host's records before it asks the plugin, and keeps them whatever the plugin answers.
    static std::int32_t Register(void* handle, const char* arguments, std::uintptr_t hostHandle,
                                 PresentationCbasedCallbacks* callbacks,
                                 TranslatorCbasedCallbacks* translator);
    static std::int32_t Start(void* handle);
    /// Refuses a reason of 2 or more without asking the plugin.
    static std::int32_t Stop(void* handle, std::uint32_t reason);
    /// Forgets the host's records if the plugin has unregistered.
    static std::int32_t Unregister(void* handle);
    static bool IsUIEnabled(void* handle);
    static std::int32_t GetIdentity(void* handle, char* buffer, std::uint32_t* size);
    static std::int32_t GetLabel(void* handle, char* buffer, std::uint32_t* size);
    static std::int32_t GetDisplayVersion(void* handle, char* buffer, std::uint32_t* size);
    static std::int32_t Encrypt(void* handle, std::uintptr_t first, std::uintptr_t second,
                                std::uintptr_t third, std::uintptr_t fourth);
    static std::int32_t Decrypt(void* handle, std::uintptr_t first, std::uintptr_t second, char* output,
                                std::uint32_t* outputSize);
    static std::int32_t EventNotification(void* handle, const char* xml);
    static bool IsMultiUserModeEnabled(void* handle);
    static std::int32_t GetPendingApprovalData(void* handle, std::uintptr_t first, std::uintptr_t second);
    static std::int32_t ApprovalEventNotification(void* handle, std::uintptr_t first);

private:
    // What the plugin calls. Without a record, nobody wants to hear (0) and nothing is translated (-10).
    std::int32_t Notify(std::uintptr_t hostHandle, const char* xml) override;
    std::int32_t StopDone(std::uintptr_t hostHandle) override;
    std::int32_t TranslatorOperation1(std::uintptr_t first, std::uintptr_t second,
                                      std::uintptr_t third) override;
    std::int32_t TranslatorOperation2(std::uintptr_t first, std::uintptr_t second,
                                      std::uintptr_t third) override;

    IPresentationPluginV3* plugin = nullptr; ///< owned
    // A callback may be under way on another thread while the host registers or unregisters: each callback
    // reads its pointer once.
    std::atomic<PresentationCbasedCallbacks*> presentationCallbacks = nullptr; ///< not owned
    std::atomic<TranslatorCbasedCallbacks*> translatorCallbacks = nullptr;     ///< not owned
};
