#include "host/serve/LiveHost.h"

#include "host/HostError.h"
#include "host/LogLevel.h"
#include "host/OutputLines.h"

#include <algorithm>
#include <cstring>
#include <string_view>
#include <utility>

namespace host::serve {
namespace {

namespace json = boost::json;

constexpr std::uintptr_t hostHandle = 1;
constexpr const char* callbacksName = "host";
constexpr const char* noObject = "there is no plugin object";

std::optional<BackendControls> findStandIn() {
    try {
        return BackendControls();
    } catch (const HostError&) {
        return std::nullopt; // another backend library, with nothing to control
    }
}

json::object inputLine(const char* word, std::string_view key, std::string_view text) {
    json::object line{{"do", word}};
    addText(line, key, text);
    return line;
}

/// Hands JSON to one of the stand-in's functions.
/// @return what is wrong with it; empty if nothing is
template <class Function>
std::string tell(Function function, const std::string& text) {
    char error[512] = "";
    return function(text.c_str(), error, sizeof error) ? std::string() : std::string(error);
}

json::object violationLine(const Violation& violation) {
    json::object line{{"out", "violation"}, {"rule", violation.name()}};
    addText(line, "text", violation.text);
    return line;
}

using Getter = std::int32_t (PluginObject::*)(char*, std::uint32_t*);

std::string textOf(PluginObject& plugin, Getter getter) {
    std::uint32_t size = 0;
    (plugin.*getter)(nullptr, &size);
    std::string text(size, '\0');
    const bool isTold = size > 0 && (plugin.*getter)(text.data(), &size) == presentationDone;
    text.resize(isTold ? std::strlen(text.c_str()) : 0);
    return text;
}

} // namespace

LiveHost::Phase LiveHost::phaseAfter(LifecycleStep step) {
    switch (step) {
    case LifecycleStep::Start:
        return Phase::Started;
    case LifecycleStep::Register:
    case LifecycleStep::Stop:
        return Phase::Registered;
    case LifecycleStep::Create:
    case LifecycleStep::Unregister:
        return Phase::Made;
    case LifecycleStep::Dispose:
        break;
    }
    return Phase::Gone;
}

LiveHost::LiveHost(const Options& options, Journal& usedJournal, MachineTracker& usedTracker)
    : journal(usedJournal)
    , tracker(usedTracker)
    , lowestSeverity(options.lowestSeverity)
    , log([this](const LogRecord& record) { onLog(record); })
    , strict([this](const Violation& violation) { journal.output(violationLine(violation)); })
    , module(loadModule(options.module, logLevels[0])) // all of it: the trace tells where the machine stands
    , backend(findStandIn())
    , callbacks(strict.makeCallbacks(
          [this](std::uintptr_t handle, const char* xml) { onNotice(handle, xml); },
          [this](std::uintptr_t handle) { journal.output(stopDoneLine(callbacksName, handle)); }))
    , slowness(options.slowness) {
    if (backend) {
        journaledBackend.emplace(*backend, journal, gate, strict.calls());
    }
}

LiveHost::~LiveHost() { close(); }

void LiveHost::loadScenario(const std::string& text) {
    std::string fault;
    thread.run([&] {
        const JournaledInput input(journal, inputLine("scenario", "json", text));
        fault = backend ? tell(backend->loadScenario, text) : "the module's backend is not the stand-in";
    });
    if (!fault.empty()) {
        throw HostError(fault);
    }
}

void LiveHost::begin() {
    thread.run([this] { makeStep(LifecycleStep::Create); });
    for (const LifecycleStep next : {LifecycleStep::Register, LifecycleStep::Start}) {
        step(next, [](const std::string&) {});
    }
}

void LiveHost::close() {
    {
        const std::lock_guard lock(mutex);
        if (std::exchange(isClosing, true)) {
            return;
        }
    }
    hurry.notify_all();
    for (const HostThread::Task& task : thread.takeWaiting()) {
        task(); // which only says that the host is closing
    }
    thread.run([this] { endPlugin(); });
    journaledBackend.reset();
}

PluginFacts LiveHost::facts() const {
    const std::lock_guard lock(mutex);
    return ownFacts;
}

void LiveHost::step(LifecycleStep step, Done done) {
    ask([this, step] { return makeStep(step); }, std::move(done));
}

void LiveHost::sendEvent(std::string xml, Done done) {
    ask(
        [this, xml = std::move(xml)] {
            if (!plugin) {
                return std::string(noObject);
            }
            return call("EventNotification", inputLine("event", "xml", xml), Turn::Kind::Plain,
                        [&] { return plugin->EventNotification(xml.c_str()); });
        },
        std::move(done));
}

void LiveHost::setKnobs(std::string text, Done done) {
    json::object line = inputLine("service", "json", text);
    askStandIn(
        std::move(line),
        [text = std::move(text)](const BackendControls& controls) { return tell(controls.set, text); },
        std::move(done));
}

void LiveHost::startScenario(std::string text, Done done) {
    json::object line = inputLine("scenario", "json", text);
    askStandIn(
        std::move(line),
        [text = std::move(text)](const BackendControls& controls) {
            return tell(controls.loadScenario, text);
        },
        std::move(done));
}

void LiveHost::setPace(std::uint32_t percent, Done done) {
    askStandIn(
        {{"do", "pace"}, {"percent", percent}},
        [percent](const BackendControls& controls) {
            controls.setPace(percent);
            return std::string();
        },
        std::move(done));
}

void LiveHost::fail(std::string operation, std::uint32_t result, std::uint32_t times, Done done) {
    askStandIn(
        {{"do", "backend"}, {"operation", operation}, {"result", result}, {"times", times}},
        [operation, result, times](const BackendControls& controls) {
            return controls.setResult(operation.c_str(), result, times)
                       ? std::string()
                       : "the backend has no operation " + operation;
        },
        std::move(done));
}

void LiveHost::heal(Done done) {
    askStandIn(
        {{"do", "backend"}, {"reset", true}},
        [](const BackendControls& controls) {
            controls.reset();
            return std::string();
        },
        std::move(done));
}

void LiveHost::setSlowness(std::uint32_t milliseconds) {
    const JournaledInput input(journal, {{"do", "slow"}, {"milliseconds", milliseconds}});
    {
        const std::lock_guard lock(mutex);
        slowness = std::chrono::milliseconds(milliseconds);
    }
    hurry.notify_all();
}

void LiveHost::deliver(std::string document, std::string text, unsigned count, Done done) {
    ask(
        [this, document = std::move(document), text = std::move(text), count]() -> std::string {
            const auto names = documentNames();
            const auto found = std::find(names.begin(), names.end(), document);
            if (!backend || found == names.end()) {
                return backend ? "there is no document " + document
                               : "the module's backend is not the stand-in";
            }
            // No turn of our own: each document takes one and is an input by itself.
            for (unsigned i = 0; i < count; ++i) {
                if (backend->deliver(WRENSIM_LATEST_API, static_cast<WrenSimDocument>(found - names.begin()),
                                     text.c_str()) != wrensim_delivered) {
                    return "nobody listens to the service";
                }
            }
            return {};
        },
        std::move(done));
}

void LiveHost::ask(Call call, Done done) {
    thread.post([this, call = std::move(call), done = std::move(done)] {
        const bool isRefused = [this] {
            const std::lock_guard lock(mutex);
            return isClosing;
        }();
        done(isRefused ? "the host is closing" : call());
    });
}

void LiveHost::askStandIn(json::object line, std::function<std::string(const BackendControls&)> act,
                          Done done) {
    ask(
        [this, line = std::move(line), act = std::move(act)]() -> std::string {
            if (!backend) {
                return "the module's backend is not the stand-in";
            }
            const Turn turn(gate, Turn::Kind::Plain);
            const JournaledInput input(journal, line);
            return act(*backend);
        },
        std::move(done));
}

std::string LiveHost::makeStep(LifecycleStep step) {
    std::string fault = callFor(step);
    if (fault.empty()) {
        phase = phaseAfter(step);
    }
    return fault;
}

std::string LiveHost::callFor(LifecycleStep step) {
    if (step == LifecycleStep::Create) {
        return create();
    }
    if (!plugin) {
        return noObject;
    }
    switch (step) {
    case LifecycleStep::Register:
        return call("Register",
                    {{"do", "register"},
                     {"arguments", ""},
                     {"callbacks", callbacksName},
                     {"translator", true},
                     {"handle", hostHandle}},
                    Turn::Kind::Plain,
                    [this] { return plugin->Register("", hostHandle, callbacks.get(), &translator); });
    case LifecycleStep::Start:
        return call("Start", {{"do", "start"}}, Turn::Kind::Plain, [this] { return plugin->Start(); });
    case LifecycleStep::Stop:
        return call("Stop", {{"do", "stop"}}, Turn::Kind::Stopping, [this] { return plugin->Stop(0); });
    case LifecycleStep::Unregister:
        return call("Unregister", {{"do", "unregister"}}, Turn::Kind::Stopping,
                    [this] { return plugin->Unregister(); });
    default:
        return dispose();
    }
}

std::string LiveHost::create() {
    if (plugin) {
        return "there is a plugin object already";
    }
    const Turn turn(gate, Turn::Kind::Plain);
    const JournaledInput input(journal, {{"do", "create"}, {"name", presentationInterfaceName}});
    try {
        plugin = strict.watched(makePlugin(module, PluginInterface::Cpp));
    } catch (const HostError& fault) {
        return fault.what();
    }
    journal.output(createdLine(plugin != nullptr));
    if (!plugin) {
        return "the module made no plugin object";
    }
    tracker.create();
    readFacts();
    return {};
}

std::string LiveHost::dispose() {
    const Turn turn(gate, Turn::Kind::Stopping);
    const JournaledInput input(journal, {{"do", "dispose"}});
    const bool isDone = plugin->dispose();
    plugin.reset();
    journal.output(resultLine(isDone));
    tracker.dispose();
    return isDone ? std::string() : "DisposePlugin answered false";
}

std::string LiveHost::call(const char* name, json::object line, Turn::Kind kind,
                           const std::function<std::int32_t()>& operation) {
    const Turn turn(gate, kind);
    const JournaledInput input(journal, std::move(line));
    const std::int32_t result = operation();
    journal.output(resultLine(result));
    return result == presentationDone ? std::string()
                                      : std::string(name) + " answered " + std::to_string(result);
}

void LiveHost::readFacts() {
    PluginFacts read{textOf(*plugin, &PluginObject::GetIdentity), textOf(*plugin, &PluginObject::GetLabel),
                     textOf(*plugin, &PluginObject::GetDisplayVersion)};
    const std::lock_guard lock(mutex);
    ownFacts = std::move(read);
}

void LiveHost::endPlugin() {
    if (phase == Phase::Started) {
        makeStep(LifecycleStep::Stop);
    }
    if (phase == Phase::Registered) {
        makeStep(LifecycleStep::Unregister);
    }
    if (plugin) {
        makeStep(LifecycleStep::Dispose);
    }
}

void LiveHost::onLog(const LogRecord& record) {
    tracker.take(record);
    if (record.severity >= lowestSeverity) {
        journal.output(logLine(record));
    }
}

void LiveHost::onNotice(std::uintptr_t handle, const char* xml) {
    journal.output(noticeLine(callbacksName, handle, xml));
    std::unique_lock lock(mutex);
    if (slowness.count() > 0) {
        hurry.wait_for(lock, slowness, [this, wait = slowness] { return isClosing || slowness != wait; });
        strict.calls().restart(); // that was the host's own time
    }
}

} // namespace host::serve
