#include "host/BackendControls.h"
#include "host/Commands.h"
#include "host/Files.h"
#include "host/HostCallbacks.h"
#include "host/HostError.h"
#include "host/Interrupt.h"
#include "host/LogLevel.h"
#include "host/LogTap.h"
#include "host/OutputLines.h"
#include "host/PluginModule.h"
#include "host/PluginObject.h"
#include "host/ScreenModel.h"
#include "host/ScreenPrinter.h"
#include "host/Text.h"
#include "host/TypedCommand.h"
#include "host/serve/Journal.h"
#include "host/serve/JournaledBackend.h"
#include "host/serve/Recording.h"
#include "host/serve/TurnGate.h"
#include "host/strict/StrictHost.h"

#include <algorithm>
#include <functional>
#include <iostream>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <unistd.h>
#include <vector>

namespace host {
namespace {

constexpr std::uintptr_t hostHandle = 1;

/// The terminal, as the threads of the plugin share it.
class Watcher {
public:
    void onNotice(const char* xml) {
        const std::lock_guard lock(mutex);
        const std::vector<ScreenChange> changes = screen.apply(xml);
        for (const ScreenChange& change : changes) {
            follow(change);
        }
        printer.print(changes, screen);
        for (const ScreenChange& change : changes) {
            tellCookie(change);
        }
    }

    /// A line of our own; none where there is nothing to say.
    void say(const std::string& text) {
        if (!text.empty()) {
            const std::lock_guard lock(mutex);
            std::cout << printable(text) << std::endl;
        }
    }

    /// Answers a typed line as far as it can.
    /// @return what is left to do: an event to send, or to quit
    TypedReply onTyped(std::string_view line) {
        const std::lock_guard lock(mutex);
        TypedReply reply = replyTo(line, screen, openPopups);
        std::cout << reply.answer << std::flush;
        return reply;
    }

    void onLog(const LogRecord& record) {
        const std::lock_guard lock(mutex);
        std::cout << "log "
                  << "TIWE?"[record.severity] << ' ' << printable(record.function) << ": "
                  << printable(record.message) << std::endl;
    }

    /// From now on the watcher knows what the service's login pages would do. `controls` must outlive all
    /// calls.
    void learnLogins(const BackendControls& controls) {
        const std::lock_guard lock(mutex);
        backend = &controls;
    }

private:
    /// There is no login page in a terminal: says which cookie a correct login would set.
    void tellCookie(const ScreenChange& change) {
        const bool isLogin = change.kind == ScreenChange::Kind::PopupOpened &&
                             std::any_of(change.popup.controls.begin(), change.popup.controls.end(),
                                         [](const ScreenControl& control) {
                                             return control.attribute("operation") == "browse_for_cookie";
                                         });
        if (!isLogin || backend == nullptr) {
            return;
        }
        const bool isEnrollment = change.popup.id == "quill_enrollment_browser_dialog";
        char cookie[256] = "";
        if (backend->loginCookie(isEnrollment ? wrensim_enrollment_login : wrensim_dataplane_login, nullptr,
                                 cookie, sizeof cookie) > 0) {
            std::cout << "  a correct login ends with: cookie " << printable(cookie) << std::endl;
        }
    }

    /// Keeps the order in which popups came to the front.
    void follow(const ScreenChange& change) {
        using Kind = ScreenChange::Kind;
        if (change.kind == Kind::PopupOpened || change.kind == Kind::PopupRaised ||
            change.kind == Kind::PopupClosed) {
            std::erase(openPopups, change.popup.id);
            if (change.kind != Kind::PopupClosed) {
                openPopups.push_back(change.popup.id);
            }
        }
    }

    std::mutex mutex;
    ScreenModel screen;
    std::vector<std::string> openPopups; ///< the one in front last
    const BackendControls* backend = nullptr;
    ScreenPrinter printer{std::cout};
};

void require(bool isDone, const char* what) {
    if (!isDone) {
        throw HostError(std::string("the plugin could not be ") + what);
    }
}

/// The lines of standard input, as they come.
class TypedLines {
public:
    /// The next whole line; none while no line is complete. To be called when there is something to read.
    std::optional<std::string> next() {
        const std::size_t end = pending.find('\n');
        if (end == std::string::npos) {
            return std::nullopt;
        }
        std::string line = pending.substr(0, end);
        pending.erase(0, end + 1);
        return line;
    }

    /// Reads what there is.
    /// @return false at the input's end
    bool read() {
        char buffer[4096];
        const ssize_t count = ::read(STDIN_FILENO, buffer, sizeof buffer);
        if (count <= 0) {
            return false;
        }
        pending.append(buffer, static_cast<std::size_t>(count));
        return true;
    }

private:
    std::string pending;
};

/// Hands JSON to one of the service's functions.
/// @return what is wrong with it; empty if nothing is
template <class Function>
std::string tellService(Function function, const std::string& json) {
    char error[512] = "";
    return function(json.c_str(), error, sizeof error) ? std::string() : std::string(error);
}

/// The plugin and the service under it, with a journal of what happens.
class WatchedPlugin {
public:
    WatchedPlugin(const WatchOptions& options, Watcher& usedWatcher, serve::Journal& usedJournal)
        : watcher(usedWatcher)
        , journal(usedJournal)
        , way(options.way)
        , strict([this](const Violation& violation) { watcher.say(lineOf(violation)); })
        , log([this, options](const LogRecord& record) {
            journal.output(logLine(record));
            if (!options.logLevel.empty() && record.severity >= severityOf(options.logLevel)) {
                watcher.onLog(record);
            }
        })
        , module(load(options))
        , journaledBackend(backend, journal, gate, strict.calls())
        , callbacks(strict.makeCallbacks(
              [this](std::uintptr_t handle, const char* xml) {
                  journal.output(noticeLine(callbacksName, handle, xml));
                  watcher.onNotice(xml);
              },
              [this](std::uintptr_t handle) { journal.output(stopDoneLine(callbacksName, handle)); })) {}

    const BackendControls& service() const { return backend; }

    void start();
    void send(const std::string& event) {
        boost::json::object line{{"do", "event"}};
        addText(line, "xml", event);
        call(std::move(line), serve::Turn::Kind::Plain,
             [&] { return plugin->EventNotification(event.c_str()); });
    }
    void stop();

private:
    static constexpr const char* callbacksName = "host";

    /// All that the module logs, where it is asked for at all: a recording has to hold what a replay logs.
    static PluginModule load(const WatchOptions& options) {
        return options.logLevel.empty() && options.recording.empty()
                   ? PluginModule(options.module)
                   : loadModule(options.module, logLevels[0]);
    }
    std::int32_t call(boost::json::object line, serve::Turn::Kind kind,
                      const std::function<std::int32_t()>& operation) {
        const serve::Turn turn(gate, kind);
        const serve::JournaledInput input(journal, std::move(line));
        const std::int32_t result = operation();
        journal.output(resultLine(result));
        return result;
    }
    void create();

    Watcher& watcher;
    serve::Journal& journal;
    const PluginInterface way;
    StrictHost strict;
    const LogTap log;
    const PluginModule module;
    const BackendControls backend;
    serve::TurnGate gate;
    serve::JournaledBackend journaledBackend;
    HostTranslator translator;
    std::unique_ptr<HostCallbacks> callbacks;
    std::unique_ptr<PluginObject> plugin;
};

void WatchedPlugin::create() {
    const bool isC = way == PluginInterface::C;
    boost::json::object line{{"do", "create"},
                             {"name", isC ? cBasedPresentationInterfaceName : presentationInterfaceName}};
    if (isC) {
        line.emplace("kind", "c");
    }
    const serve::Turn turn(gate, serve::Turn::Kind::Plain);
    const serve::JournaledInput input(journal, std::move(line));
    plugin = strict.watched(makePlugin(module, way));
    journal.output(createdLine(plugin != nullptr));
}

void WatchedPlugin::start() {
    using Kind = serve::Turn::Kind;
    create();
    require(plugin != nullptr, "created");
    require(call({{"do", "register"},
                  {"arguments", ""},
                  {"callbacks", callbacksName},
                  {"translator", true},
                  {"handle", hostHandle}},
                 Kind::Plain,
                 [this] { return plugin->Register("", hostHandle, callbacks.get(), &translator); }) ==
                presentationDone,
            "registered");
    require(call({{"do", "start"}}, Kind::Plain, [this] { return plugin->Start(); }) == presentationDone,
            "started");
}

void WatchedPlugin::stop() {
    using Kind = serve::Turn::Kind;
    require(call({{"do", "stop"}}, Kind::Stopping, [this] { return plugin->Stop(0); }) == presentationDone,
            "stopped");
    require(call({{"do", "unregister"}}, Kind::Stopping, [this] { return plugin->Unregister(); }) ==
                presentationDone,
            "unregistered");
    const serve::Turn turn(gate, Kind::Stopping);
    const serve::JournaledInput input(journal, {{"do", "dispose"}});
    const bool isDone = plugin->dispose();
    plugin.reset();
    journal.output(resultLine(isDone));
}

/// Takes typed commands until the user leaves or interrupts; after the input's end, until the latter.
void serveTyped(Interrupt& interrupt, Watcher& watcher, WatchedPlugin& plugin) {
    TypedLines lines;
    while (interrupt.waitForInput()) {
        if (!lines.read()) {
            interrupt.wait();
            return;
        }
        while (const std::optional<std::string> line = lines.next()) {
            const TypedReply reply = watcher.onTyped(*line);
            if (reply.wantsToQuit) {
                return;
            }
            if (!reply.event.empty()) {
                plugin.send(reply.event);
            }
            if (!reply.knobs.empty()) {
                watcher.say(tellService(plugin.service().set, reply.knobs));
            }
        }
    }
}

void loadScenario(const BackendControls& service, const std::filesystem::path& file) {
    const std::string fault = tellService(service.loadScenario, readFile(file));
    if (!fault.empty()) {
        throw HostError(file.string() + ": " + fault);
    }
}

} // namespace

void watchScreen(const WatchOptions& options) {
    Interrupt interrupt;
    serve::RecordingFile recording(options.recording,
                                   options.keepsSecrets ? serve::Secrets::Kept : serve::Secrets::BlankedOut);
    serve::Journal journal(recording.limits());
    journal.setSignal([&journal] { journal.takeNew(); }); // nobody follows it
    Watcher watcher;
    {
        WatchedPlugin plugin(options, watcher, journal);
        if (!options.scenario.empty()) {
            loadScenario(plugin.service(), options.scenario);
        }
        watcher.learnLogins(plugin.service());
        plugin.start();
        serveTyped(interrupt, watcher, plugin);
        plugin.stop();
    }
    recording.write(journal);
}

} // namespace host
