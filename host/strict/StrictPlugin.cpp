#include "host/strict/StrictHost.h"

#include "wren/PresentationPluginResult.h"

namespace host {

/// A plugin object whose calls a strict host checks and times.
class StrictPlugin final : public PluginObject {
    template <class Operation>
    auto timed(const char* name, Operation operation) {
        const CallWatch::Call call(host.watch, name);
        return operation();
    }

public:
    StrictPlugin(StrictHost& usedHost, std::unique_ptr<PluginObject> plugin)
        : host(usedHost)
        , number(host.add())
        , inner(std::move(plugin)) {}
    StrictPlugin(const StrictPlugin&) = delete;
    StrictPlugin& operator=(const StrictPlugin&) = delete;
    ~StrictPlugin() override {
        if (inner) {
            end([this] {
                inner.reset();
                return true;
            });
        }
    }

    bool SupportsInterface(const char* name, int version) override {
        return timed("SupportsInterface", [&] { return inner->SupportsInterface(name, version); });
    }
    std::int32_t Register(const char* arguments, std::uintptr_t hostHandle, HostCallbacks* callbacks,
                          HostTranslator* translator) override;
    std::int32_t Start() override {
        return checked("Start", [&] { return inner->Start(); });
    }
    std::int32_t Stop(std::uint32_t reason) override;
    std::int32_t Unregister() override;
    bool IsUIEnabled() override {
        return timed("IsUIEnabled", [&] { return inner->IsUIEnabled(); });
    }
    std::int32_t GetIdentity(char* buffer, std::uint32_t* size) override {
        return timed("GetIdentity", [&] { return inner->GetIdentity(buffer, size); });
    }
    std::int32_t GetLabel(char* buffer, std::uint32_t* size) override {
        return timed("GetLabel", [&] { return inner->GetLabel(buffer, size); });
    }
    std::int32_t GetDisplayVersion(char* buffer, std::uint32_t* size) override {
        return timed("GetDisplayVersion", [&] { return inner->GetDisplayVersion(buffer, size); });
    }
    std::int32_t Encrypt(std::uintptr_t first, std::uintptr_t second, std::uintptr_t third,
                         std::uintptr_t fourth) override {
        return timed("Encrypt", [&] { return inner->Encrypt(first, second, third, fourth); });
    }
    std::int32_t Decrypt(std::uintptr_t first, std::uintptr_t second, char* output,
                         std::uint32_t* outputSize) override {
        return timed("Decrypt", [&] { return inner->Decrypt(first, second, output, outputSize); });
    }
    std::int32_t EventNotification(const char* xml) override;
    bool IsMultiUserModeEnabled() override {
        return timed("IsMultiUserModeEnabled", [&] { return inner->IsMultiUserModeEnabled(); });
    }
    std::int32_t GetPendingApprovalData(std::uintptr_t first, std::uintptr_t second) override {
        return timed("GetPendingApprovalData", [&] { return inner->GetPendingApprovalData(first, second); });
    }
    std::int32_t ApprovalEventNotification(std::uintptr_t first) override {
        return timed("ApprovalEventNotification", [&] { return inner->ApprovalEventNotification(first); });
    }

    bool dispose() override {
        return host.mayCall(number, "dispose") && end([this] {
                   const bool isDone = inner->dispose();
                   inner.reset();
                   return isDone;
               });
    }
    PresentationPluginCbasedMethods* record() override { return inner->record(); }

private:
    /// For calls that take the plugin's lock.
    template <class Operation>
    std::int32_t checked(const char* name, Operation operation) {
        return host.mayCall(number, name) ? timed(name, operation) : presentationFailed;
    }
    template <class Operation>
    bool end(Operation operation) {
        host.stops(number, true);
        const bool isDone = timed("dispose", operation);
        host.disposed(number);
        return isDone;
    }

    StrictHost& host;
    const unsigned number;
    std::unique_ptr<PluginObject> inner; ///< null once it is disposed of
};

std::int32_t StrictPlugin::Register(const char* arguments, std::uintptr_t hostHandle,
                                    HostCallbacks* callbacks, HostTranslator* translator) {
    return checked("Register", [&] {
        const StrictHost::Channel channel(callbacks, hostHandle);
        // A refused registration leaves the channel as it was. The C record follows its latest one even so.
        const bool isGiven = callbacks != nullptr && host.registers(number, channel);
        const std::int32_t result = inner->Register(arguments, hostHandle, callbacks, translator);
        if (isGiven && result != presentationDone && inner->record() == nullptr) {
            host.isRefused(number, channel);
        }
        return result;
    });
}

std::int32_t StrictPlugin::Stop(std::uint32_t reason) {
    return checked("Stop", [&] {
        host.stops(number, true);
        const std::int32_t result = inner->Stop(reason);
        host.stops(number, false);
        return result;
    });
}

std::int32_t StrictPlugin::Unregister() {
    return checked("Unregister", [&] {
        const std::int32_t result = inner->Unregister();
        if (result == presentationDone) {
            host.unregistered(number);
        }
        return result;
    });
}

std::int32_t StrictPlugin::EventNotification(const char* xml) {
    if (!host.mayCall(number, "EventNotification", xml)) {
        return presentationFailed;
    }
    if (xml != nullptr) {
        host.sends(number, xml);
    }
    return timed("EventNotification", [&] { return inner->EventNotification(xml); });
}

std::unique_ptr<PluginObject> StrictHost::watched(std::unique_ptr<PluginObject> plugin) {
    return plugin ? std::make_unique<StrictPlugin>(*this, std::move(plugin)) : nullptr;
}

} // namespace host
