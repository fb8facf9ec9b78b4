/// A plugin object that does what a test says.
#pragma once

#include "host/PluginObject.h"
#include "wren/PresentationPluginResult.h"

#include <functional>

namespace test {

/// Keeps its callbacks for good, even where it should not.
class FakePlugin final : public host::PluginObject {
public:
    using Action = std::function<std::int32_t()>;
    struct Script {
        Action onRegister, onStart, onStop, onUnregister, onEvent, onDispose;
        host::HostCallbacks* callbacks = nullptr; ///< as registered last
    };

    explicit FakePlugin(Script& usedScript)
        : script(usedScript) {}

    bool SupportsInterface(const char*, int) override { return true; }
    std::int32_t Register(const char*, std::uintptr_t, host::HostCallbacks* callbacks,
                          host::HostTranslator*) override {
        script.callbacks = callbacks;
        return run(script.onRegister);
    }
    std::int32_t Start() override { return run(script.onStart); }
    std::int32_t Stop(std::uint32_t) override { return run(script.onStop); }
    std::int32_t Unregister() override { return run(script.onUnregister); }
    bool IsUIEnabled() override { return true; }
    std::int32_t GetIdentity(char*, std::uint32_t*) override { return presentationFailed; }
    std::int32_t GetLabel(char*, std::uint32_t*) override { return presentationFailed; }
    std::int32_t GetDisplayVersion(char*, std::uint32_t*) override { return presentationFailed; }
    std::int32_t Encrypt(std::uintptr_t, std::uintptr_t, std::uintptr_t, std::uintptr_t) override {
        return presentationEncryptUnavailable;
    }
    std::int32_t Decrypt(std::uintptr_t, std::uintptr_t, char*, std::uint32_t*) override {
        return presentationNotProvided;
    }
    std::int32_t EventNotification(const char*) override { return run(script.onEvent); }
    bool IsMultiUserModeEnabled() override { return true; }
    std::int32_t GetPendingApprovalData(std::uintptr_t, std::uintptr_t) override {
        return presentationNotProvided;
    }
    std::int32_t ApprovalEventNotification(std::uintptr_t) override { return presentationNotProvided; }
    bool dispose() override { return run(script.onDispose) == presentationDone; }
    PresentationPluginCbasedMethods* record() override { return nullptr; }

private:
    static std::int32_t run(const Action& action) { return action ? action() : presentationDone; }

    Script& script;
};

} // namespace test
