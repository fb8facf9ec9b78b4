// The least that a host in C++ does, linked with the module: one life of a plugin, by the classes of the SDK.
#include "wren/PresentationPlugin.h"

#include <atomic>
#include <cstdio>

namespace {

class Callbacks : public IPresentationCB {
public:
    std::int32_t Notify(std::uintptr_t, const char*) override {
        ++notices;
        return 0;
    }
    std::int32_t StopDone(std::uintptr_t) override {
        isStopped = true;
        return 0;
    }

    std::atomic<int> notices{0};
    std::atomic<bool> isStopped{false};
};

class Translator : public ITranslator {
public:
    std::int32_t TranslatorOperation1(std::uintptr_t, std::uintptr_t, std::uintptr_t) override { return 0; }
    std::int32_t TranslatorOperation2(std::uintptr_t, std::uintptr_t, std::uintptr_t) override { return 0; }
};

int fail(const char* what) {
    std::fprintf(stderr, "%s\n", what);
    return 1;
}

} // namespace

int main() {
    Plugin* const made = CreatePlugin(presentationInterfaceName);
    if (made == nullptr || !made->SupportsInterface(presentationInterfaceName, 3)) {
        return fail("no plugin of version 3");
    }
    auto* const plugin = static_cast<IPresentationPluginV3*>(made);
    char version[32] = "";
    std::uint32_t size = sizeof version;
    Callbacks callbacks;
    Translator translator;
    if (plugin->GetDisplayVersion(version, &size) != presentationDone ||
        plugin->Register("", 1, &callbacks, &translator) != presentationDone ||
        plugin->Start() != presentationDone || plugin->Stop(0) != presentationDone ||
        plugin->Unregister() != presentationDone || !DisposePlugin(plugin)) {
        return fail("the plugin refuses");
    }
    if (callbacks.notices == 0 || !callbacks.isStopped) {
        return fail("the plugin is silent");
    }
    std::printf("C++ host: version %s\n", version);
    return 0;
}
