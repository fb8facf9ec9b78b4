#include "tests/boundary/BoundaryPlugin.h"

#include <string>
#include <utility>

namespace test {
namespace {

class CppPlugin final : public BoundaryPlugin {
public:
    CppPlugin() = default;
    CppPlugin(const CppPlugin&) = delete;
    CppPlugin& operator=(const CppPlugin&) = delete;
    ~CppPlugin() override {
        if (plugin) {
            DisposePlugin(plugin);
        }
    }

    bool make() {
        plugin = static_cast<IPresentationPluginV3*>(CreatePlugin(presentationInterfaceName));
        return plugin != nullptr;
    }

    std::int32_t Register(BoundaryHost& host) override { return plugin->Register("", 7, &host, &host); }
    std::int32_t Start() override { return plugin->Start(); }
    std::int32_t Stop(std::uint32_t reason) override { return plugin->Stop(reason); }
    std::int32_t Unregister() override { return plugin->Unregister(); }
    std::int32_t EventNotification(const char* xml) override { return plugin->EventNotification(xml); }

private:
    IPresentationPluginV3* plugin = nullptr;
};

class CPlugin final : public BoundaryPlugin {
public:
    CPlugin() = default;
    CPlugin(const CPlugin&) = delete;
    CPlugin& operator=(const CPlugin&) = delete;
    ~CPlugin() override {
        if (record) {
            DisposeCbasedPlugin(record);
        }
    }

    bool make() {
        record = CreateCbasedPlugin(cBasedPresentationInterfaceName);
        return record != nullptr;
    }

    std::int32_t Register(BoundaryHost& host) override {
        return record->Register(record->handle, "", 7, host.callbackRecord(), host.translatorRecord());
    }
    std::int32_t Start() override { return record->Start(record->handle); }
    std::int32_t Stop(std::uint32_t reason) override { return record->Stop(record->handle, reason); }
    std::int32_t Unregister() override { return record->Unregister(record->handle); }
    std::int32_t EventNotification(const char* xml) override {
        return record->EventNotification(record->handle, xml);
    }

private:
    PresentationPluginCbasedMethods* record = nullptr;
};

} // namespace

std::int32_t BoundaryHost::Notify(std::uintptr_t, const char* xml) {
    ++notices;
    if (onNotice) {
        onNotice(xml);
    }
    return 0;
}

std::int32_t BoundaryHost::StopDone(std::uintptr_t) {
    ++stops;
    return 0;
}

std::int32_t BoundaryPlugin::press(const std::string& control) {
    return EventNotification(("<vtguiEvent id=\"" + control + "_OnPress\"/>").c_str());
}

std::unique_ptr<BoundaryPlugin> makePlugin(Interface interface) {
    // The owner comes first: what the module gives out is lost at no point.
    if (interface == Interface::Cpp) {
        auto plugin = std::make_unique<CppPlugin>();
        return plugin->make() ? std::move(plugin) : nullptr;
    }
    auto plugin = std::make_unique<CPlugin>();
    return plugin->make() ? std::move(plugin) : nullptr;
}

} // namespace test
