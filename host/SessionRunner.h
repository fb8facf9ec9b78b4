/// Runs the inputs of a session against a module.
#pragma once

#include "host/BackendControls.h"
#include "host/HostCallbacks.h"
#include "host/PluginModule.h"
#include "host/PluginObject.h"
#include "host/SessionFile.h"
#include "host/SessionRecorder.h"
#include "host/strict/StrictHost.h"

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace host {

/// One session. The stand-in service does only what the session tells it. All objects that the session leaves
/// behind are disposed of at the end, unrecorded.
class SessionRunner {
public:
    /// Module, backend and recorder must outlive the runner.
    /// @param onlyInterface makes every object of the session through that interface, whatever its line says:
    ///     the names that "create" lines hold get the "c_" of the C interface's name, or lose it
    /// @param strictHost watches all calls and callbacks; null: nobody does. It must outlive the runner
    SessionRunner(const PluginModule& module, const BackendControls& backend, SessionRecorder& recorder,
                  std::optional<PluginInterface> onlyInterface = std::nullopt,
                  StrictHost* strictHost = nullptr);
    SessionRunner(const SessionRunner&) = delete;
    SessionRunner& operator=(const SessionRunner&) = delete;
    ~SessionRunner();

    /// Runs the inputs one after the other, on this thread.
    /// @throws HostError that names the line, before an input that cannot be run
    void run(const Session& session);

private:
    /// What the session knows under one name.
    struct NamedObject {
        std::unique_ptr<PluginObject> plugin;   ///< null if it was never there or has been disposed of
        std::vector<std::uint64_t> connections; ///< to the backend, in the order of their start
        PluginInterface way = PluginInterface::Cpp;
        bool wasDisposed = false;
        PresentationPluginCbasedMethods* lastRecord = nullptr; ///< where the object's record is or was
    };

    void runInput(const SessionInput& input);

    void requireRunnable(const SessionInput& input) const;
    void requireCreatable(const SessionInput& input) const;
    void requireDisposable(const SessionInput& input) const;
    void requireLive(const SessionInput& input) const;
    void callPlugin(const SessionInput& input, PluginObject& plugin);

    PluginInterface interfaceOf(const SessionInput& input) const;
    std::optional<std::string> nameOf(const SessionInput& input) const;
    void create(const SessionInput& input);
    void dispose(const SessionInput& input);
    bool disposeOf(const std::string& name);
    bool isInUse(const PresentationPluginCbasedMethods* record) const;
    void registerCallbacks(const SessionInput& input, PluginObject& plugin);
    void start(const SessionInput& input, PluginObject& plugin);
    void get(const SessionInput& input, PluginObject& plugin);
    void callInert(const SessionInput& input, PluginObject& plugin);
    void deliver(const SessionInput& input);
    void tellBackend(const SessionInput& input);

    HostCallbacks* callbacksOf(const std::string& name);
    static void onApiCall(void* context, std::uint64_t api, const char* operation, const char* json);

    const PluginModule& module;
    const BackendControls& backend;
    SessionRecorder& recorder;
    std::optional<PluginInterface> onlyInterface;
    StrictHost* const strict; ///< may be null
    HostTranslator translator;
    std::map<std::string, std::unique_ptr<HostCallbacks>> callbacks;
    std::vector<std::unique_ptr<PluginObject>> replaced; ///< objects whose name went to a later one
    std::map<std::string, NamedObject> objects;
    std::vector<std::uint64_t>* starting = nullptr; ///< connections of the object that is in "start"
};

} // namespace host
