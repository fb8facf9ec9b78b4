/// The real module, driven through its classes, and a host that counts what reaches it.
#pragma once

#include "backend-sim/WrenSim.h"
#include "host/LogTap.h"
#include "host/PluginModule.h"
#include "wren/QuillApi.h"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <string>
#include <string_view>

namespace test {

/// Any thread may call it.
class CountingHost : public IPresentationCB, public ITranslator {
public:
    std::atomic<unsigned> notices = 0;
    std::atomic<unsigned> stops = 0;
    std::atomic<bool> isGone = false;
    std::atomic<unsigned> lateCalls = 0;
    std::atomic<unsigned> errorPopups = 0;
    std::atomic<unsigned> disposals = 0;
    std::function<void(const char* xml)> onNotice; ///< set before the plugin starts

    std::int32_t Notify(std::uintptr_t, const char* xml) override {
        ++notices;
        lateCalls += isGone ? 1 : 0;
        const std::string_view text(xml);
        const bool isOfErrorPopup = text.find(" id=\"wren_client_error_dialog\"") != std::string_view::npos;
        errorPopups += isOfErrorPopup && text.find(" type=\"custom\"") != std::string_view::npos ? 1 : 0;
        disposals += isOfErrorPopup && text.find(" dispose=\"true\"") != std::string_view::npos ? 1 : 0;
        if (onNotice) {
            onNotice(xml);
        }
        return 0;
    }
    std::int32_t StopDone(std::uintptr_t) override {
        ++stops;
        return 0;
    }
    std::int32_t TranslatorOperation1(std::uintptr_t, std::uintptr_t, std::uintptr_t) override { return 0; }
    std::int32_t TranslatorOperation2(std::uintptr_t, std::uintptr_t, std::uintptr_t) override { return 0; }
};

/// The module is loaded anew for each test, and the stand-in beside it stays silent.
class ModuleTest : public testing::Test {
protected:
    void SetUp() override { wrensim_set_quiet(true); }
    void TearDown() override {
        // Receivers that it remembers for late documents would cost memory at each unloading.
        wrensim_forget_receivers();
        wrensim_set_quiet(false);
    }

    /// A plugin that is registered with that host.
    host::OwnedPlugin make(CountingHost& counting) {
        host::OwnedPlugin plugin(module.create("com.norvane.vantor.presentation"), host::PluginOwner(module));
        EXPECT_EQ(plugin->Register("", 7, &counting, &counting), 0);
        return plugin;
    }

    static void press(IPresentationPluginV3& plugin, const std::string& event) {
        plugin.EventNotification(("<vtguiEvent id=\"" + event + "\"/>").c_str());
    }

    host::LogTap log{[](const host::LogRecord&) {}};
    host::PluginModule module{host::defaultModulePath()};
};

/// The side of the object that the backend calls: its second base, behind the first, which is one pointer. A
/// cast by type would need the module at link time.
inline IQuillApiCallbacks& callbacksOf(IPresentationPluginV3& plugin) {
    void* const object = dynamic_cast<void*>(&plugin);
    auto* const callbacks = reinterpret_cast<IQuillApiCallbacks*>(static_cast<void**>(object) + 1);
    EXPECT_EQ(dynamic_cast<void*>(callbacks), object);
    return *callbacks;
}

} // namespace test
