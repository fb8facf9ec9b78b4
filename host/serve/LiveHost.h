/// The host of one module: what it calls, what it hears, and the journal of both.
#pragma once

#include "host/BackendControls.h"
#include "host/HostCallbacks.h"
#include "host/LogTap.h"
#include "host/PluginModule.h"
#include "host/PluginObject.h"
#include "host/serve/HostThread.h"
#include "host/serve/Journal.h"
#include "host/serve/JournaledBackend.h"
#include "host/serve/MachineTracker.h"
#include "host/serve/TurnGate.h"
#include "host/strict/StrictHost.h"

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace host::serve {

/// What a plugin object tells about itself.
struct PluginFacts {
    std::string identity;
    std::string label;
    std::string version;
};

enum class LifecycleStep { Create, Register, Start, Stop, Unregister, Dispose };

/// Loads a module and keeps at most one plugin object of it. All calls are made on one thread of this
/// object's own, in the order in which they were asked for, and are journaled as inputs with what came of
/// them; so are the documents of the stand-in service, which come on its thread. Inputs run one at a time.
/// Rules that are broken are journaled too.
///
/// The operations may be called on any thread and return at once. Each calls `Done` when its call has ended,
/// on the host's thread, or where the host is closing, on that of `close`.
class LiveHost {
public:
    /// Takes what went wrong; empty: nothing.
    using Done = std::function<void(const std::string& error)>;

    struct Options {
        std::filesystem::path module;
        int lowestSeverity = 0;     ///< of the log records that are journaled
        std::uint32_t slowness = 0; ///< milliseconds that the host takes for each notice
    };

    /// Loads the module. @param journal and `tracker` must outlive this object
    /// @throws HostError where it cannot be loaded
    LiveHost(const Options& options, Journal& usedJournal, MachineTracker& usedTracker);
    LiveHost(const LiveHost&) = delete;
    LiveHost& operator=(const LiveHost&) = delete;
    ~LiveHost();

    /// Puts the stand-in into the state of a scenario and waits until it was taken.
    /// @throws HostError that tells what is wrong with it, or where there is no stand-in
    void loadScenario(const std::string& json);
    /// Makes a plugin object and waits for it; registers and starts it then, as far as that goes.
    void begin();
    /// Ends what runs: stops, unregisters and disposes, as far as there is need, and lets go of the stand-in.
    /// What is asked for after this is refused.
    void close();

    /// Null where the module's backend is another one.
    const BackendControls* standIn() const { return backend ? &*backend : nullptr; }
    /// Of the object that was made last.
    PluginFacts facts() const;

    void step(LifecycleStep step, Done done);
    void sendEvent(std::string xml, Done done);
    void setKnobs(std::string json, Done done);
    void startScenario(std::string json, Done done);
    void setPace(std::uint32_t percent, Done done);
    void fail(std::string operation, std::uint32_t result, std::uint32_t times, Done done);
    void heal(Done done);
    /// Takes effect at once.
    void setSlowness(std::uint32_t milliseconds);
    /// @param document as sessions name it. Done when the documents wait for their turn.
    void deliver(std::string document, std::string json, unsigned count, Done done);

private:
    enum class Phase { Gone, Made, Registered, Started };
    static Phase phaseAfter(LifecycleStep step);
    using Call = std::function<std::string()>; ///< returns what went wrong

    void ask(Call call, Done done);
    /// Does something with the stand-in as an input of its own.
    void askStandIn(boost::json::object line, std::function<std::string(const BackendControls&)> act,
                    Done done);
    std::string makeStep(LifecycleStep step);
    std::string callFor(LifecycleStep step);
    std::string create();
    std::string dispose();
    /// Makes a call that answers with a number.
    std::string call(const char* name, boost::json::object line, Turn::Kind kind,
                     const std::function<std::int32_t()>& operation);
    void readFacts();
    void endPlugin();

    void onLog(const LogRecord& record);
    void onNotice(std::uintptr_t handle, const char* xml);
    Journal& journal;
    MachineTracker& tracker;
    const int lowestSeverity;
    TurnGate gate;
    LogTap log;
    StrictHost strict;
    PluginModule module;
    std::optional<BackendControls> backend;
    std::optional<JournaledBackend> journaledBackend;
    HostTranslator translator;
    std::unique_ptr<HostCallbacks> callbacks;
    std::unique_ptr<PluginObject> plugin; ///< on the host's thread, as is `phase`
    Phase phase = Phase::Gone;

    mutable std::mutex mutex;
    std::condition_variable hurry;
    std::chrono::milliseconds slowness; ///< per notice
    bool isClosing = false;
    PluginFacts ownFacts;

    HostThread thread; ///< last: it uses the others
};

} // namespace host::serve
