/// The objects that the host supplies to a plugin, with the records that stand for them in C.
#pragma once

#include "wren/PresentationPlugin.h"
#include "wren/PresentationPluginCbased.h"

#include <cstdint>
#include <functional>

namespace host {

/// A callback object that passes on what arrives. Called on any thread, with the plugin's lock held: neither
/// function may call the plugin.
class HostCallbacks final : public IPresentationCB {
public:
    using NoticeHandler = std::function<void(std::uintptr_t hostHandle, const char* xml)>;
    using StopDoneHandler = std::function<void(std::uintptr_t hostHandle)>;

    HostCallbacks(NoticeHandler onNotice, StopDoneHandler onStopDone);
    HostCallbacks(const HostCallbacks&) = delete;
    HostCallbacks& operator=(const HostCallbacks&) = delete;

    /// A record that leads to this object, for as long as it lives.
    PresentationCbasedCallbacks* record() { return &cRecord; }

    std::int32_t Notify(std::uintptr_t hostHandle, const char* xml) override;
    std::int32_t StopDone(std::uintptr_t hostHandle) override;

private:
    NoticeHandler noticeHandler;
    StopDoneHandler stopDoneHandler;
    PresentationCbasedCallbacks cRecord;
};

/// A translator that translates nothing.
class HostTranslator final : public ITranslator {
public:
    HostTranslator();
    HostTranslator(const HostTranslator&) = delete;
    HostTranslator& operator=(const HostTranslator&) = delete;

    /// A record that leads to this object, for as long as it lives.
    TranslatorCbasedCallbacks* record() { return &cRecord; }

    std::int32_t TranslatorOperation1(std::uintptr_t first, std::uintptr_t second,
                                      std::uintptr_t third) override;
    std::int32_t TranslatorOperation2(std::uintptr_t first, std::uintptr_t second,
                                      std::uintptr_t third) override;

private:
    TranslatorCbasedCallbacks cRecord;
};

} // namespace host
