/// The real module under a host that looks at nothing and a backend library that does nothing.
#pragma once

#include "host/PluginModule.h"
#include "wren/QuillApi.h"

#include <memory>
#include <string>
#include <vector>

namespace bench {

/// A host that takes notices. It keeps them only while it is told to.
class KeepingHost final : public IPresentationCB, public ITranslator {
public:
    std::int32_t Notify(std::uintptr_t, const char* xml) override;
    std::int32_t StopDone(std::uintptr_t) override { return 0; }
    std::int32_t TranslatorOperation1(std::uintptr_t, std::uintptr_t, std::uintptr_t) override { return 0; }
    std::int32_t TranslatorOperation2(std::uintptr_t, std::uintptr_t, std::uintptr_t) override { return 0; }

    void keepNotices(bool wanted) { keeps = wanted; }
    /// Those that came while they were kept; forgets them.
    std::vector<std::string> takeNotices() { return std::move(notices); }

private:
    bool keeps = false;
    std::vector<std::string> notices;
};

/// A running plugin object of the module, which logs from DBG_INFO on, as it does without a configuration.
class LoadedPlugin {
public:
    LoadedPlugin();

    KeepingHost& host() { return keepingHost; }
    /// Where the backend's documents go in.
    IQuillApiCallbacks& callbacks() { return *receiver; }

private:
    KeepingHost keepingHost;
    host::PluginModule module;
    host::OwnedPlugin plugin;
    std::shared_ptr<IQuillApiCallbacks> receiver; ///< goes first: the plugin's end waits for it
};

} // namespace bench
