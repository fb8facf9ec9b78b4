/// A plugin as a host holds it, through either of the module's interfaces, and the host's side of it. The
/// module's exported functions are linked in, with the backend that lives in memory.
#pragma once

#include "wren/Plugin.h"
#include "wren/PresentationPlugin.h"
#include "wren/PresentationPluginCbased.h"

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace test {

/// Hears what the plugin tells. The counters may be read by any thread.
class BoundaryHost : public IPresentationCB, public ITranslator {
public:
    std::atomic<std::size_t> notices = 0;
    std::atomic<std::size_t> stops = 0;
    std::function<void(const char* xml)> onNotice; ///< called within each notice; set while no plugin runs

    std::int32_t Notify(std::uintptr_t hostHandle, const char* xml) override;
    std::int32_t StopDone(std::uintptr_t hostHandle) override;
    std::int32_t TranslatorOperation1(std::uintptr_t, std::uintptr_t, std::uintptr_t) override { return 0; }
    std::int32_t TranslatorOperation2(std::uintptr_t, std::uintptr_t, std::uintptr_t) override { return 0; }

    /// The same host for those who want records of functions.
    PresentationCbasedCallbacks* callbackRecord() { return &callbacks; }
    TranslatorCbasedCallbacks* translatorRecord() { return &translator; }

private:
    PresentationCbasedCallbacks callbacks{reinterpret_cast<std::uintptr_t>(this),
                                          [](std::uintptr_t self, std::uintptr_t handle, const char* xml) {
                                              return reinterpret_cast<BoundaryHost*>(self)->Notify(handle,
                                                                                                   xml);
                                          },
                                          [](std::uintptr_t self, std::uintptr_t handle) {
                                              return reinterpret_cast<BoundaryHost*>(self)->StopDone(handle);
                                          }};
    TranslatorCbasedCallbacks translator{0, nullptr, nullptr};
};

enum class Interface { Cpp, C };

/// The operations that change something. Disposed of at its end, if it was not before.
class BoundaryPlugin {
public:
    virtual ~BoundaryPlugin() = default;
    virtual std::int32_t Register(BoundaryHost& host) = 0;
    virtual std::int32_t Start() = 0;
    virtual std::int32_t Stop(std::uint32_t reason) = 0;
    virtual std::int32_t Unregister() = 0;
    virtual std::int32_t EventNotification(const char* xml) = 0;
    /// The plugin's event for a button: "<control>_OnPress".
    std::int32_t press(const std::string& control);
};

/// @return null where the module refuses
std::unique_ptr<BoundaryPlugin> makePlugin(Interface interface);

} // namespace test
