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

/// What a plugin notes of its beginning and end.
struct Life {
    Life() { ++fakeModule.alive; }
    Life(const Life&) = delete;
    Life& operator=(const Life&) = delete;
    ~Life() {
        --fakeModule.alive;
        if (fakeModule.stopsAtTheEnd) {
            fakeModule.presentationCB->StopDone(fakeModule.hostHandle);
        }
    }
};

class FakePlugin final : public IPresentationPluginV3 {
public:
    explicit FakePlugin(int offeredVersion)
        : version(offeredVersion) {}

    bool SupportsInterface(const char* name, int wanted) override {
        return noteForAnswer("SupportsInterface", name, wanted) && wanted <= version;
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

private:
    const Life life;
    const int version; ///< the latest that it offers
};

} // namespace
} // namespace test

Plugin::Plugin() = default;
Plugin::Plugin(const Plugin&) {}
Plugin& Plugin::operator=(const Plugin&) { return *this; }
Plugin::~Plugin() = default;
#ifdef _WIN32
void* Plugin::DeletingDestructor(unsigned int) { return this; }
#endif

Plugin* CreatePlugin(const char* interfaceName) {
    using Makes = test::FakeModule::Makes;
    test::fakeModule.created = interfaceName;
    test::throwIfTold();
    if (test::fakeModule.makes == Makes::Nothing) {
        return nullptr;
    }
    return new test::FakePlugin(test::fakeModule.makes == Makes::PluginOfAnOlderVersion ? 2 : 3);
}

bool DisposePlugin(Plugin* plugin) {
    delete static_cast<test::FakePlugin*>(plugin);
    return test::fakeModule.disposeResult;
}
