/// Runs the inputs of a session against a module.
#pragma once

#include "host/BackendControls.h"
#include "host/HostCallbacks.h"
#include "host/PluginModule.h"
#include "host/SessionFile.h"
#include "host/SessionRecorder.h"

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace host {

/// One session. The stand-in service does only what the session tells it. All objects that the session leaves
/// behind are disposed of at the end, unrecorded.
class SessionRunner {
public:
    /// All three must outlive the runner.
    SessionRunner(const PluginModule& module, const BackendControls& backend, SessionRecorder& recorder);
    SessionRunner(const SessionRunner&) = delete;
    SessionRunner& operator=(const SessionRunner&) = delete;
    ~SessionRunner();

    /// Runs the inputs one after the other, on this thread.
    /// @throws HostError that names the line, before an input that cannot be run
    void run(const Session& session);

private:
    /// What the session knows under one name.
    struct NamedObject {
        OwnedPlugin plugin;
        std::vector<std::uint64_t> connections; ///< to the backend, in the order of their start
        bool wasDisposed = false;
    };

    void runInput(const SessionInput& input);

    void requireRunnable(const SessionInput& input) const;
    void requireCreatable(const SessionInput& input) const;
    void requireDisposable(const SessionInput& input) const;
    void requireLive(const SessionInput& input) const;
    void callPlugin(const SessionInput& input, IPresentationPluginV3& plugin);

    void create(const SessionInput& input);
    void dispose(const SessionInput& input);
    void registerCallbacks(const SessionInput& input, IPresentationPluginV3& plugin);
    void start(const SessionInput& input, IPresentationPluginV3& plugin);
    void get(const SessionInput& input, IPresentationPluginV3& plugin);
    void callInert(const SessionInput& input, IPresentationPluginV3& plugin);
    void deliver(const SessionInput& input);
    void tellBackend(const SessionInput& input);

    HostCallbacks* callbacksOf(const std::string& name);
    static void onApiCall(void* context, std::uint64_t api, const char* operation, const char* json);

    const PluginModule& module;
    const BackendControls& backend;
    SessionRecorder& recorder;
    HostTranslator translator;
    std::map<std::string, std::unique_ptr<HostCallbacks>> callbacks;
    std::vector<OwnedPlugin> replaced; ///< objects whose name went to a later one
    std::map<std::string, NamedObject> objects;
    std::vector<std::uint64_t>* starting = nullptr; ///< connections of the object that is in "start"
};

} // namespace host
