#include "tests/Plugins/PresentationPluginCommon/FakePlugin.h"

#include <sstream>
#include <stdexcept>

namespace test {

FakeModule fakeModule;

std::string spelled(const void* address) {
    std::ostringstream text;
    text << address;
    return text.str();
}

namespace {

void throwIfTold() {
    if (fakeModule.throws) {
        throw std::runtime_error("the plugin threw");
    }
    if (fakeModule.throwsANumber) {
        throw 1;
    }
}

void note(const std::string& call) {
    fakeModule.called = call;
    throwIfTold();
}

template <class... Arguments>
void note(const char* operation, const Arguments&... arguments) {
    std::ostringstream text;
    text << operation;
    ((text << ' ' << arguments), ...);
    note(text.str());
}

template <class... Arguments>
std::int32_t noteForResult(const char* operation, const Arguments&... arguments) {
    note(operation, arguments...);
    return fakeModule.result;
}

template <class... Arguments>
bool noteForAnswer(const char* operation, const Arguments&... arguments) {
    note(operation, arguments...);
    return fakeModule.answer;
}

class FakePlugin final : public IPresentationPluginV3 {
public:
    FakePlugin() { ++fakeModule.alive; }
    FakePlugin(const FakePlugin&) = delete;
    FakePlugin& operator=(const FakePlugin&) = delete;
    ~FakePlugin() override {
        --fakeModule.alive;
        if (fakeModule.stopsAtTheEnd) {
            fakeModule.presentationCB->StopDone(fakeModule.hostHandle);
        }
    }

    bool SupportsInterface(const char* name, int version) override {
        return noteForAnswer("SupportsInterface", name, version);
    }
    std::int32_t Register(const char* arguments, std::uintptr_t hostHandle, IPresentationCB* presentationCB,
                          ITranslator* translator) override {
        fakeModule.hostHandle = hostHandle;
        fakeModule.presentationCB = presentationCB;
        fakeModule.translator = translator;
        return noteForResult("Register", arguments, hostHandle);
    }
    std::int32_t Start() override { return noteForResult("Start"); }
    std::int32_t Stop(std::uint32_t reason) override { return noteForResult("Stop", reason); }
    std::int32_t Unregister() override { return noteForResult("Unregister"); }
    bool IsUIEnabled() override { return noteForAnswer("IsUIEnabled"); }
    std::int32_t GetIdentity(char* buffer, std::uint32_t* size) override {
        return noteForResult("GetIdentity", spelled(buffer), size);
    }
    std::int32_t GetLabel(char* buffer, std::uint32_t* size) override {
        return noteForResult("GetLabel", spelled(buffer), size);
    }
    std::int32_t GetDisplayVersion(char* buffer, std::uint32_t* size) override {
        return noteForResult("GetDisplayVersion", spelled(buffer), size);
    }
    std::int32_t Encrypt(std::uintptr_t first, std::uintptr_t second, std::uintptr_t third,
                         std::uintptr_t fourth) override {
        return noteForResult("Encrypt", first, second, third, fourth);
    }
    std::int32_t Decrypt(std::uintptr_t first, std::uintptr_t second, char* output,
                         std::uint32_t* outputSize) override {
        return noteForResult("Decrypt", first, second, spelled(output), outputSize);
    }
    std::int32_t EventNotification(const char* xml) override {
        return noteForResult("EventNotification", xml);
    }
    bool IsMultiUserModeEnabled() override { return noteForAnswer("IsMultiUserModeEnabled"); }
    std::int32_t GetPendingApprovalData(std::uintptr_t first, std::uintptr_t second) override {
        return noteForResult("GetPendingApprovalData", first, second);
    }
    std::int32_t ApprovalEventNotification(std::uintptr_t first) override {
        return noteForResult("ApprovalEventNotification", first);
    }
};

/// Not an `IPresentationPluginV3`.
class OldPlugin final : public Plugin {
public:
    OldPlugin() { ++fakeModule.alive; }
    OldPlugin(const OldPlugin&) = delete;
    OldPlugin& operator=(const OldPlugin&) = delete;
    ~OldPlugin() override { --fakeModule.alive; }
    bool SupportsInterface(const char*, int) override { return true; }
};

} // namespace
} // namespace test

Plugin::Plugin() = default;
Plugin::Plugin(const Plugin&) {}
Plugin& Plugin::operator=(const Plugin&) { return *this; }
Plugin::~Plugin() = default;

Plugin* CreatePlugin(const char* interfaceName) {
    using Makes = test::FakeModule::Makes;
    test::fakeModule.created = interfaceName;
    test::throwIfTold();
    if (test::fakeModule.makes == Makes::Nothing) {
        return nullptr;
    }
    if (test::fakeModule.makes == Makes::PluginOfAnOlderVersion) {
        return new test::OldPlugin;
    }
    return new test::FakePlugin;
}

bool DisposePlugin(Plugin* plugin) {
    delete plugin;
    return test::fakeModule.disposeResult;
}
