// A plugin module without a product: it does what a host's test asks for and shows what reached it. Events
// are commands ("log TEXT", "notice TEXT", "request TEXT", "thread TEXT"), documents come back as notices.
#include "tests/host/module-system/ModuleSystem.h"
#include "wren/PresentationPlugin.h"
#include "wren/QuillApi.h"

#include <atomic>
#include <cstring>
#include <future>
#include <memory>
#include <string>
#include <string_view>
#include <thread>

namespace {

constexpr PluginInterfaceEntry entries[] = {{presentationInterfaceName, 3}, {"echo", 1}};

void logLine(char mark, const char* function, const std::string& message) {
    std::string line = "2026-01-02 03:04:05.000006 echo[0x1, 0x2] ";
    line.append(1, mark).append("/ EchoModule:12 ").append(function).append("() ").append(message);
    test::module_system::log(line);
}

std::int32_t copyText(std::string_view text, char* buffer, std::uint32_t* size) {
    const auto needed = static_cast<std::uint32_t>(text.size() + 1);
    if (buffer == nullptr || *size < needed) {
        *size = needed;
        return presentationBufferTooSmall;
    }
    std::memcpy(buffer, text.data(), text.size());
    buffer[text.size()] = '\0';
    return presentationDone;
}

class EchoPlugin final : public IPresentationPluginV3, public IQuillApiCallbacks {
public:
    explicit EchoPlugin(const std::weak_ptr<IQuillApiFactory>& given)
        : factory(given) {}
    EchoPlugin(const EchoPlugin&) = delete;
    EchoPlugin& operator=(const EchoPlugin&) = delete;
    ~EchoPlugin() override {
        if (api) {
            Stop(0);
        }
        logLine('T', "EchoPlugin::~EchoPlugin", "gone");
        self.reset();
        released->get_future().wait(); // for callbacks that are still inside
    }

    bool SupportsInterface(const char* name, int version) override {
        return name != nullptr && std::string_view(name) == presentationInterfaceName && version == 3;
    }
    std::int32_t Register(const char* arguments, std::uintptr_t handle, IPresentationCB* given,
                          ITranslator* translator) override {
        logLine('I', "EchoPlugin::Register", arguments != nullptr ? arguments : "(null)");
        if (arguments == nullptr || given == nullptr || translator == nullptr) {
            return presentationNullArgument;
        }
        callbacks = given;
        hostHandle = handle;
        return presentationDone;
    }
    std::int32_t Start() override {
        const auto locked = factory.lock();
        const bool isMade = locked && locked->CreateApi(api) == QuillApiResult::Success && api;
        if (!isMade || api->Start(std::shared_ptr<IQuillApiCallbacks>(self)) != QuillApiResult::Success) {
            api.reset();
            return presentationFailed;
        }
        return presentationDone;
    }
    std::int32_t Stop(std::uint32_t reason) override {
        if (!api) {
            return presentationFailed;
        }
        api->Stop();
        api.reset();
        logLine('T', "EchoPlugin::Stop", std::to_string(reason));
        callbacks.load()->StopDone(hostHandle);
        return presentationDone;
    }
    std::int32_t Unregister() override {
        callbacks = nullptr;
        return presentationDone;
    }
    bool IsUIEnabled() override { return true; }
    std::int32_t GetIdentity(char* buffer, std::uint32_t* size) override {
        return copyText("echo.identity", buffer, size);
    }
    std::int32_t GetLabel(char* buffer, std::uint32_t* size) override {
        return copyText("Echo", buffer, size);
    }
    std::int32_t GetDisplayVersion(char* buffer, std::uint32_t* size) override {
        return copyText("1.2", buffer, size);
    }
    std::int32_t Encrypt(std::uintptr_t, std::uintptr_t, std::uintptr_t, std::uintptr_t) override {
        return presentationEncryptUnavailable;
    }
    std::int32_t Decrypt(std::uintptr_t, std::uintptr_t, char* output, std::uint32_t* size) override {
        if (output != nullptr) {
            *output = '\0';
        }
        *size = 0;
        return presentationNotProvided;
    }
    std::int32_t EventNotification(const char* xml) override {
        const std::string_view command(xml);
        const std::string text(command.substr(command.find(' ') + 1));
        if (command.starts_with("log ")) {
            logLine('W', "EchoPlugin::operator ()", text);
        } else if (command.starts_with("notice ")) {
            callbacks.load()->Notify(hostHandle, text.c_str());
        } else if (command.starts_with("request ")) {
            return static_cast<std::int32_t>(api->TriggerPostureReports(text.c_str()));
        } else if (command.starts_with("thread ")) {
            std::thread([&] { callbacks.load()->Notify(hostHandle, text.c_str()); }).join();
        } else {
            return presentationFailed;
        }
        return presentationDone;
    }
    bool IsMultiUserModeEnabled() override { return false; }
    std::int32_t GetPendingApprovalData(std::uintptr_t, std::uintptr_t) override {
        return presentationNotProvided;
    }
    std::int32_t ApprovalEventNotification(std::uintptr_t) override { return presentationNotProvided; }

    void StatusNotification(const char* json) override { echo("status ", json); }
    void EnrollmentStatusNotification(const char* json) override { echo("enrollment status ", json); }
    void EnrollmentAuthRequest(const char* json) override { echo("auth request ", json); }
    void UnenrollmentStatusNotification(const char* json) override { echo("unenrollment status ", json); }
    void DataplaneNotification(const char* json) override { echo("dataplane ", json); }

private:
    void echo(const char* what, const char* json) {
        logLine('E', "EchoPlugin::echo", what);
        if (IPresentationCB* const host = callbacks) {
            host->Notify(hostHandle, (what + std::string(json)).c_str());
        }
    }

    std::atomic<IPresentationCB*> callbacks = nullptr;
    std::atomic<std::uintptr_t> hostHandle = 0;
    std::weak_ptr<IQuillApiFactory> factory;
    std::shared_ptr<IQuillApi> api;
    std::shared_ptr<std::promise<void>> released = std::make_shared<std::promise<void>>();
    std::shared_ptr<IQuillApiCallbacks> self{static_cast<IQuillApiCallbacks*>(this),
                                             [kept = released](auto*) { kept->set_value(); }};
};

} // namespace

PluginInterfaceList GetAvailableInterfaces() { return {entries, 2}; }

Plugin* CreatePlugin(const char* interfaceName) {
    logLine('T', "CreatePlugin", interfaceName != nullptr ? interfaceName : "(null)");
    std::weak_ptr<IQuillApiFactory> factory;
    const bool isRight =
        interfaceName != nullptr && std::string_view(interfaceName) == presentationInterfaceName;
    if (!isRight || GetQuillApiFactory(factory) != QuillApiResult::Success) {
        return nullptr;
    }
    return new EchoPlugin(factory);
}

bool DisposePlugin(Plugin* plugin) {
    logLine('T', "DisposePlugin", plugin != nullptr ? "object" : "null");
    delete static_cast<EchoPlugin*>(plugin);
    return true;
}
