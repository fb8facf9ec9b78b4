#include "host/SessionRunner.h"

#include "host/HostError.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace host {
namespace {

/// What the name of the C interface has in front of the other's.
constexpr std::string_view cMark = "c_";

/// No getter's text comes near this size: what a session claims beyond it needs no memory behind it.
constexpr std::uint64_t greatestBuffer = 64 * 1024;

constexpr std::array<std::string_view, 5> documents{
    "StatusNotification",    "EnrollmentStatusNotification",
    "EnrollmentAuthRequest", "UnenrollmentStatusNotification",
    "DataplaneNotification",
};
static_assert(documents.size() == wrensim_dataplane_notification + 1);

WrenSimDocument documentOf(std::string_view name) {
    const auto found = std::find(documents.begin(), documents.end(), name);
    return static_cast<WrenSimDocument>(found - documents.begin());
}

using Getter = std::int32_t (PluginObject::*)(char*, std::uint32_t*);

Getter getterOf(std::string_view what) {
    return what == "identity" ? &PluginObject::GetIdentity
           : what == "label"  ? &PluginObject::GetLabel
                              : &PluginObject::GetDisplayVersion;
}

bool callsPlugin(InputKind kind) {
    constexpr std::array calls{InputKind::Supports, InputKind::Register,   InputKind::Start,
                               InputKind::Stop,     InputKind::Unregister, InputKind::Get,
                               InputKind::Inert,    InputKind::Event};
    return std::find(calls.begin(), calls.end(), kind) != calls.end();
}

std::string named(const SessionInput& input) { return "object \"" + input.object() + "\""; }

} // namespace

SessionRunner::SessionRunner(const PluginModule& usedModule, const BackendControls& usedBackend,
                             SessionRecorder& usedRecorder, std::optional<PluginInterface> wantedInterface,
                             StrictHost* strictHost)
    : module(usedModule)
    , backend(usedBackend)
    , recorder(usedRecorder)
    , onlyInterface(wantedInterface)
    , strict(strictHost) {
    backend.setQuiet(true);
    backend.observe(&SessionRunner::onApiCall, this);
}

SessionRunner::~SessionRunner() {
    recorder.end();
    objects.clear();
    replaced.clear();
    backend.observe(nullptr, nullptr);
    // Receivers that it remembers for late documents would cost memory at each unloading of the module.
    backend.forgetReceivers();
    backend.reset(); // the library may stay, for the next session
}

void SessionRunner::run(const Session& session) {
    for (const SessionInput& input : session.inputs) {
        try {
            requireRunnable(input);
            recorder.input(input);
            runInput(input);
        } catch (const HostError& fault) {
            throw HostError(atLine(session.name, input.line(), fault.what()));
        }
    }
    recorder.end();
}

void SessionRunner::requireRunnable(const SessionInput& input) const {
    if (input.kind() == InputKind::Create) {
        requireCreatable(input);
    } else if (input.kind() == InputKind::Dispose) {
        requireDisposable(input);
    } else if (callsPlugin(input.kind())) {
        requireLive(input);
    } else if (input.kind() == InputKind::Deliver && !objects.contains(input.object())) {
        throw HostError(named(input) + " was never created");
    }
}

void SessionRunner::requireCreatable(const SessionInput& input) const {
    if (interfaceOf(input) == PluginInterface::C && !module.hasCRecord()) {
        throw HostError("the module exports no CreateCbasedPlugin");
    }
}

void SessionRunner::requireDisposable(const SessionInput& input) const {
    if (input.isNull("object")) {
        if (onlyInterface == PluginInterface::C && !module.hasCRecord()) {
            throw HostError("the module exports no DisposeCbasedPlugin");
        }
        return;
    }
    const auto found = objects.find(input.object());
    if (found == objects.end()) {
        if (!module.hasCRecord()) {
            throw HostError(named(input) + " was never created, and the module exports no "
                                           "DisposeCbasedPlugin that could be given a foreign record");
        }
    } else if (found->second.wasDisposed && found->second.way == PluginInterface::Cpp) {
        throw HostError(named(input) + " has been disposed of already");
    }
}

void SessionRunner::requireLive(const SessionInput& input) const {
    const auto found = objects.find(input.object());
    if (found == objects.end()) {
        throw HostError(named(input) + " was never created");
    }
    if (!found->second.plugin) {
        throw HostError(named(input) +
                        (found->second.wasDisposed ? " has been disposed of" : " could not be created"));
    }
    if (input.flag("null_handle", false) && found->second.way == PluginInterface::Cpp) {
        throw HostError("\"null_handle\" is for objects of kind \"c\"");
    }
}

void SessionRunner::runInput(const SessionInput& input) {
    if (callsPlugin(input.kind())) {
        PluginObject& plugin = *objects.find(input.object())->second.plugin;
        if (input.flag("null_handle", false)) {
            callPlugin(input, *behindNullHandle(*plugin.record()));
        } else {
            callPlugin(input, plugin);
        }
    } else if (input.kind() == InputKind::Interfaces) {
        recorder.interfaces(module.interfaces());
    } else if (input.kind() == InputKind::Create) {
        create(input);
    } else if (input.kind() == InputKind::Dispose) {
        dispose(input);
    } else if (input.kind() == InputKind::Deliver) {
        deliver(input);
    } else if (input.kind() != InputKind::Session) {
        tellBackend(input);
    }
}

void SessionRunner::callPlugin(const SessionInput& input, PluginObject& plugin) {
    switch (input.kind()) {
    case InputKind::Supports:
        return recorder.result(plugin.SupportsInterface(input.pointer("name"), input.number("version")));
    case InputKind::Register:
        return registerCallbacks(input, plugin);
    case InputKind::Start:
        return start(input, plugin);
    case InputKind::Stop:
        return recorder.result(plugin.Stop(static_cast<std::uint32_t>(input.count("reason", 0))));
    case InputKind::Unregister:
        return recorder.result(plugin.Unregister());
    case InputKind::Get:
        return get(input, plugin);
    case InputKind::Inert:
        return callInert(input, plugin);
    case InputKind::Event:
        return recorder.result(plugin.EventNotification(input.pointer("xml")));
    default:
        return;
    }
}

PluginInterface SessionRunner::interfaceOf(const SessionInput& input) const {
    const bool wantsC = input.has("kind") && input.text("kind") == "c";
    return onlyInterface.value_or(wantsC ? PluginInterface::C : PluginInterface::Cpp);
}

std::optional<std::string> SessionRunner::nameOf(const SessionInput& input) const {
    if (input.isNull("name")) {
        return std::nullopt;
    }
    const std::string& name = input.text("name");
    if (!onlyInterface) {
        return name;
    }
    const std::string plain = name.starts_with(cMark) ? name.substr(cMark.size()) : name;
    return *onlyInterface == PluginInterface::C ? std::string(cMark) + plain : plain;
}

void SessionRunner::create(const SessionInput& input) {
    const PluginInterface way = interfaceOf(input);
    const std::optional<std::string> name = nameOf(input);
    auto plugin = makePlugin(module, way, name ? name->c_str() : nullptr);
    if (strict != nullptr) {
        plugin = strict->watched(std::move(plugin));
    }
    const bool hasObject = plugin != nullptr;
    NamedObject& object = objects.try_emplace(input.object()).first->second;
    if (hasObject) {
        if (object.plugin) {
            replaced.push_back(std::move(object.plugin));
        }
        PresentationPluginCbasedMethods* const record = plugin->record();
        object = {std::move(plugin), {}, way, false, record};
    } else if (!object.plugin && !object.wasDisposed) {
        object.way = way;
    }
    recorder.created(hasObject);
}

void SessionRunner::dispose(const SessionInput& input) {
    recorder.result(input.isNull("object")
                        ? disposeOfNull(module, onlyInterface.value_or(PluginInterface::Cpp))
                        : disposeOf(input.object()));
}

bool SessionRunner::disposeOf(const std::string& name) {
    PresentationPluginCbasedMethods foreign{};
    const auto found = objects.find(name);
    if (found == objects.end()) {
        return module.disposeCbased(&foreign);
    }
    NamedObject& object = found->second;
    if (object.plugin) {
        object.wasDisposed = true;
        return std::exchange(object.plugin, nullptr)->dispose();
    }
    if (!object.wasDisposed) {
        return disposeOfNull(module, object.way);
    }
    // The module tells records by their addresses, and this one may have gone to a later record since.
    return module.disposeCbased(isInUse(object.lastRecord) ? &foreign : object.lastRecord);
}

bool SessionRunner::isInUse(const PresentationPluginCbasedMethods* record) const {
    const auto isThat = [record](const std::unique_ptr<PluginObject>& plugin) {
        return plugin && plugin->record() == record;
    };
    return std::any_of(replaced.begin(), replaced.end(), isThat) ||
           std::any_of(objects.begin(), objects.end(),
                       [&](const auto& named) { return isThat(named.second.plugin); });
}

void SessionRunner::registerCallbacks(const SessionInput& input, PluginObject& plugin) {
    HostCallbacks* given = input.isNull("callbacks") ? nullptr : callbacksOf(input.text("callbacks"));
    const auto handle = static_cast<std::uintptr_t>(input.count("handle")); // no larger in a session
    recorder.result(plugin.Register(input.pointer("arguments"), handle, given,
                                    input.flag("translator") ? &translator : nullptr));
}

void SessionRunner::start(const SessionInput& input, PluginObject& plugin) {
    starting = &objects.find(input.object())->second.connections;
    const std::int32_t result = plugin.Start();
    starting = nullptr;
    recorder.result(result);
}

void SessionRunner::get(const SessionInput& input, PluginObject& plugin) {
    auto size = static_cast<std::uint32_t>(input.count("size"));
    const bool hasBuffer = input.flag("buffer");
    std::string buffer(std::min<std::size_t>(size, greatestBuffer), '\0');
    const std::int32_t result =
        (plugin.*getterOf(input.text("what")))(hasBuffer ? buffer.data() : nullptr, &size);
    const bool isCopied = hasBuffer && result == presentationDone;
    recorder.result(result, size, isCopied ? std::optional(buffer) : std::nullopt);
}

void SessionRunner::callInert(const SessionInput& input, PluginObject& plugin) {
    const std::string& operation = input.text("operation");
    if (operation == "Encrypt") {
        recorder.result(plugin.Encrypt(0, 0, 0, 0));
    } else if (operation == "Decrypt") {
        const bool hasOutput = input.flag("output", true);
        char output[2] = {'?', '\0'};
        std::uint32_t size = sizeof output;
        const std::int32_t result = plugin.Decrypt(0, 0, hasOutput ? output : nullptr, &size);
        recorder.decrypted(result, size,
                           hasOutput ? std::optional(static_cast<unsigned char>(output[0])) : std::nullopt);
    } else if (operation == "GetPendingApprovalData") {
        recorder.result(plugin.GetPendingApprovalData(0, 0));
    } else if (operation == "ApprovalEventNotification") {
        recorder.result(plugin.ApprovalEventNotification(0));
    } else if (operation == "IsUIEnabled") {
        recorder.result(plugin.IsUIEnabled());
    } else {
        recorder.result(plugin.IsMultiUserModeEnabled());
    }
}

void SessionRunner::deliver(const SessionInput& input) {
    std::optional<CallWatch::Call> timed;
    if (strict != nullptr) {
        timed.emplace(strict->calls(), input.text("document"));
    }
    // A connection whose start failed has no receiver; the one before it still may.
    const auto& connections = objects.find(input.object())->second.connections;
    for (auto connection = connections.rbegin(); connection != connections.rend(); ++connection) {
        if (backend.deliverAndWait(*connection, documentOf(input.text("document")), input.pointer("json")) ==
            wrensim_delivered) {
            return;
        }
    }
}

void SessionRunner::tellBackend(const SessionInput& input) {
    if (input.kind() == InputKind::BackendResult) {
        backend.setResult(input.pointer("operation"), static_cast<std::uint32_t>(input.count("result")),
                          static_cast<std::uint32_t>(input.count("times", 1)));
    } else if (input.kind() == InputKind::BackendNullApi) {
        backend.setNullApi(input.flag("null_api"));
    } else if (input.kind() == InputKind::BackendFactoryExpired) {
        backend.setFactoryExpired(input.flag("factory_expired"));
    } else {
        backend.reset();
    }
}

HostCallbacks* SessionRunner::callbacksOf(const std::string& name) {
    auto& made = callbacks[name];
    if (!made) {
        HostCallbacks::NoticeHandler onNotice = [this, name](std::uintptr_t handle, const char* xml) {
            recorder.notice(name, handle, xml);
        };
        HostCallbacks::StopDoneHandler onStopDone = [this, name](std::uintptr_t handle) {
            recorder.stopDone(name, handle);
        };
        made = strict != nullptr
                   ? strict->makeCallbacks(std::move(onNotice), std::move(onStopDone))
                   : std::make_unique<HostCallbacks>(std::move(onNotice), std::move(onStopDone));
    }
    return made.get();
}

void SessionRunner::onApiCall(void* context, std::uint64_t api, const char* operation, const char* json) {
    auto& runner = *static_cast<SessionRunner*>(context);
    runner.recorder.apiCall(operation, json);
    if (operation == std::string_view("Start") && runner.starting != nullptr) {
        runner.starting->push_back(api);
    }
}

} // namespace host
