#include "host/PluginObject.h"

#include <utility>

namespace host {
namespace {

/// A plugin that is a class.
class CppPlugin final : public PluginObject {
public:
    CppPlugin(const PluginModule& from, OwnedPlugin made)
        : module(from)
        , plugin(std::move(made)) {}

    bool SupportsInterface(const char* name, int version) override {
        return plugin->SupportsInterface(name, version);
    }
    std::int32_t Register(const char* arguments, std::uintptr_t hostHandle, HostCallbacks* callbacks,
                          HostTranslator* translator) override {
        return plugin->Register(arguments, hostHandle, callbacks, translator);
    }
    std::int32_t Start() override { return plugin->Start(); }
    std::int32_t Stop(std::uint32_t reason) override { return plugin->Stop(reason); }
    std::int32_t Unregister() override { return plugin->Unregister(); }
    bool IsUIEnabled() override { return plugin->IsUIEnabled(); }
    std::int32_t GetIdentity(char* buffer, std::uint32_t* size) override {
        return plugin->GetIdentity(buffer, size);
    }
    std::int32_t GetLabel(char* buffer, std::uint32_t* size) override {
        return plugin->GetLabel(buffer, size);
    }
    std::int32_t GetDisplayVersion(char* buffer, std::uint32_t* size) override {
        return plugin->GetDisplayVersion(buffer, size);
    }
    std::int32_t Encrypt(std::uintptr_t first, std::uintptr_t second, std::uintptr_t third,
                         std::uintptr_t fourth) override {
        return plugin->Encrypt(first, second, third, fourth);
    }
    std::int32_t Decrypt(std::uintptr_t first, std::uintptr_t second, char* output,
                         std::uint32_t* outputSize) override {
        return plugin->Decrypt(first, second, output, outputSize);
    }
    std::int32_t EventNotification(const char* xml) override { return plugin->EventNotification(xml); }
    bool IsMultiUserModeEnabled() override { return plugin->IsMultiUserModeEnabled(); }
    std::int32_t GetPendingApprovalData(std::uintptr_t first, std::uintptr_t second) override {
        return plugin->GetPendingApprovalData(first, second);
    }
    std::int32_t ApprovalEventNotification(std::uintptr_t first) override {
        return plugin->ApprovalEventNotification(first);
    }

    bool dispose() override { return module.dispose(plugin.release()); }
    PresentationPluginCbasedMethods* record() override { return nullptr; }

private:
    const PluginModule& module;
    OwnedPlugin plugin;
};

/// A plugin that is a record of functions, seen through one handle.
class CPlugin : public PluginObject {
public:
    CPlugin(PresentationPluginCbasedMethods* record, void* usedHandle)
        : methods(record)
        , handle(usedHandle) {}

    bool SupportsInterface(const char* name, int version) override {
        return methods->SupportsInterface(handle, name, version);
    }
    std::int32_t Register(const char* arguments, std::uintptr_t hostHandle, HostCallbacks* callbacks,
                          HostTranslator* translator) override {
        return methods->Register(handle, arguments, hostHandle,
                                 callbacks != nullptr ? callbacks->record() : nullptr,
                                 translator != nullptr ? translator->record() : nullptr);
    }
    std::int32_t Start() override { return methods->Start(handle); }
    std::int32_t Stop(std::uint32_t reason) override { return methods->Stop(handle, reason); }
    std::int32_t Unregister() override { return methods->Unregister(handle); }
    bool IsUIEnabled() override { return methods->IsUIEnabled(handle); }
    std::int32_t GetIdentity(char* buffer, std::uint32_t* size) override {
        return methods->GetIdentity(handle, buffer, size);
    }
    std::int32_t GetLabel(char* buffer, std::uint32_t* size) override {
        return methods->GetLabel(handle, buffer, size);
    }
    std::int32_t GetDisplayVersion(char* buffer, std::uint32_t* size) override {
        return methods->GetDisplayVersion(handle, buffer, size);
    }
    std::int32_t Encrypt(std::uintptr_t first, std::uintptr_t second, std::uintptr_t third,
                         std::uintptr_t fourth) override {
        return methods->Encrypt(handle, first, second, third, fourth);
    }
    std::int32_t Decrypt(std::uintptr_t first, std::uintptr_t second, char* output,
                         std::uint32_t* outputSize) override {
        return methods->Decrypt(handle, first, second, output, outputSize);
    }
    std::int32_t EventNotification(const char* xml) override {
        return methods->EventNotification(handle, xml);
    }
    bool IsMultiUserModeEnabled() override { return methods->IsMultiUserModeEnabled(handle); }
    std::int32_t GetPendingApprovalData(std::uintptr_t first, std::uintptr_t second) override {
        return methods->GetPendingApprovalData(handle, first, second);
    }
    std::int32_t ApprovalEventNotification(std::uintptr_t first) override {
        return methods->ApprovalEventNotification(handle, first);
    }

    bool dispose() override { return false; }
    PresentationPluginCbasedMethods* record() override { return methods; }

protected:
    PresentationPluginCbasedMethods* methods;

private:
    void* handle;
};

/// The same, disposed of at its end.
class OwnedCPlugin final : public CPlugin {
public:
    OwnedCPlugin(const PluginModule& from, PresentationPluginCbasedMethods* record)
        : CPlugin(record, record->handle)
        , module(from) {}
    OwnedCPlugin(const OwnedCPlugin&) = delete;
    OwnedCPlugin& operator=(const OwnedCPlugin&) = delete;
    ~OwnedCPlugin() override {
        if (methods != nullptr) {
            module.disposeCbased(methods);
        }
    }

    bool dispose() override { return module.disposeCbased(std::exchange(methods, nullptr)); }

private:
    const PluginModule& module;
};

} // namespace

std::unique_ptr<PluginObject> makePlugin(const PluginModule& module, PluginInterface use, const char* name) {
    if (use == PluginInterface::C) {
        PresentationPluginCbasedMethods* record = module.createCbased(name);
        return record != nullptr ? std::make_unique<OwnedCPlugin>(module, record) : nullptr;
    }
    OwnedPlugin plugin(module.create(name), PluginOwner(module));
    return plugin ? std::make_unique<CppPlugin>(module, std::move(plugin)) : nullptr;
}

std::unique_ptr<PluginObject> makePlugin(const PluginModule& module, PluginInterface use) {
    return makePlugin(
        module, use, use == PluginInterface::C ? cBasedPresentationInterfaceName : presentationInterfaceName);
}

bool disposeOfNull(const PluginModule& module, PluginInterface use) {
    return use == PluginInterface::C ? module.disposeCbased(nullptr) : module.dispose(nullptr);
}

std::unique_ptr<PluginObject> behindNullHandle(PresentationPluginCbasedMethods& record) {
    return std::make_unique<CPlugin>(&record, nullptr);
}

} // namespace host
