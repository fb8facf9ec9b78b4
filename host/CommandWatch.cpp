#include "host/BackendControls.h"
#include "host/Commands.h"
#include "host/Files.h"
#include "host/HostCallbacks.h"
#include "host/HostError.h"
#include "host/Interrupt.h"
#include "host/LogLevel.h"
#include "host/LogTap.h"
#include "host/PluginModule.h"
#include "host/PluginObject.h"
#include "host/ScreenModel.h"
#include "host/ScreenPrinter.h"
#include "host/Text.h"
#include "host/TypedCommand.h"

#include <algorithm>
#include <iostream>
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
                  << "TIWE?"[record.severity] << ' ' << record.function << ": " << printable(record.message)
                  << std::endl;
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

/// Takes typed commands until the user leaves or interrupts; after the input's end, until the latter.
void serveTyped(Interrupt& interrupt, Watcher& watcher, const BackendControls& backend,
                PluginObject& plugin) {
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
                plugin.EventNotification(reply.event.c_str());
            }
            if (!reply.knobs.empty()) {
                watcher.say(tellService(backend.set, reply.knobs));
            }
        }
    }
}

} // namespace

void watchScreen(const WatchOptions& options) {
    Interrupt interrupt;
    const bool showsLog = !options.logLevel.empty();
    Watcher watcher;
    const LogTap log([&](const LogRecord& record) {
        if (showsLog) {
            watcher.onLog(record);
        }
    });
    const PluginModule module =
        showsLog ? loadModule(options.module, options.logLevel) : PluginModule(options.module);
    const BackendControls backend;
    if (!options.scenario.empty()) {
        const std::string fault = tellService(backend.loadScenario, readFile(options.scenario));
        if (!fault.empty()) {
            throw HostError(options.scenario.string() + ": " + fault);
        }
    }
    watcher.learnLogins(backend);
    HostTranslator translator;
    HostCallbacks callbacks([&](std::uintptr_t, const char* xml) { watcher.onNotice(xml); },
                            [](std::uintptr_t) {});
    auto plugin = makePlugin(module, options.way);
    require(plugin != nullptr, "created");
    require(plugin->Register("", hostHandle, &callbacks, &translator) == presentationDone, "registered");
    require(plugin->Start() == presentationDone, "started");
    serveTyped(interrupt, watcher, backend, *plugin);
    require(plugin->Stop(0) == presentationDone, "stopped");
    require(plugin->Unregister() == presentationDone, "unregistered");
    plugin.reset();
    backend.forgetReceivers();
}

} // namespace host
