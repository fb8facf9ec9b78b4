#include "host/SessionRunner.h"

#include "host/HostError.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace host {
namespace {

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

using Getter = std::int32_t (IPresentationPlugin::*)(char*, std::uint32_t*);

Getter getterOf(std::string_view what) {
    return what == "identity" ? &IPresentationPlugin::GetIdentity
           : what == "label"  ? &IPresentationPlugin::GetLabel
                              : &IPresentationPlugin::GetDisplayVersion;
}

std::string named(const SessionInput& input) { return "object \"" + input.object() + "\""; }

} // namespace

SessionRunner::SessionRunner(const PluginModule& usedModule, const BackendControls& usedBackend,
                             SessionRecorder& usedRecorder)
    : module(usedModule)
    , backend(usedBackend)
    , recorder(usedRecorder) {
    backend.setQuiet(true);
    backend.observe(&SessionRunner::onApiCall, this);
}

SessionRunner::~SessionRunner() {
    recorder.end();
    objects.clear();
    replaced.clear();
    backend.observe(nullptr, nullptr);
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
    const auto found = input.isNull("object") ? objects.end() : objects.find(input.object());
    const bool isKnown = found != objects.end();
    const bool isLive = isKnown && found->second.plugin;
    if (input.flag("null_handle", false)) {
        throw HostError("\"null_handle\" is for objects of kind \"c\"");
    }
    switch (input.kind()) {
    case InputKind::Create:
        if (input.has("kind") && input.text("kind") == "c") {
            throw HostError(module.hasCRecord() ? "this host does not speak the module's C interface"
                                                : "the module exports no CreateCbasedPlugin");
        }
        return;
    case InputKind::Dispose:
        if (!isKnown && !input.isNull("object")) {
            throw HostError(named(input) +
                            " was never created, and the module exports no DisposeCbasedPlugin "
                            "that could be given a foreign record");
        }
        if (isKnown && found->second.wasDisposed) {
            throw HostError(named(input) + " has been disposed of already");
        }
        return;
    case InputKind::Deliver:
        if (!isKnown) {
            throw HostError(named(input) + " was never created");
        }
        return;
    case InputKind::Supports:
    case InputKind::Register:
    case InputKind::Start:
    case InputKind::Stop:
    case InputKind::Unregister:
    case InputKind::Get:
    case InputKind::Inert:
    case InputKind::Event:
        if (!isLive) {
            throw HostError(named(input) + (!isKnown                    ? " was never created"
                                            : found->second.wasDisposed ? " has been disposed of"
                                                                        : " could not be created"));
        }
        return;
    case InputKind::Session:
    case InputKind::Interfaces:
    case InputKind::BackendResult:
    case InputKind::BackendNullApi:
    case InputKind::BackendFactoryExpired:
    case InputKind::BackendReset:
        return;
    }
}

void SessionRunner::runInput(const SessionInput& input) {
    switch (input.kind()) {
    case InputKind::Session:
        return;
    case InputKind::Interfaces:
        return recorder.interfaces(module.interfaces());
    case InputKind::Create:
        return create(input);
    case InputKind::Dispose:
        return dispose(input);
    case InputKind::Deliver:
        return deliver(input);
    case InputKind::BackendResult:
    case InputKind::BackendNullApi:
    case InputKind::BackendFactoryExpired:
    case InputKind::BackendReset:
        return tellBackend(input);
    case InputKind::Supports:
    case InputKind::Register:
    case InputKind::Start:
    case InputKind::Stop:
    case InputKind::Unregister:
    case InputKind::Get:
    case InputKind::Inert:
    case InputKind::Event:
        return callPlugin(input, *objects.find(input.object())->second.plugin);
    }
}

void SessionRunner::callPlugin(const SessionInput& input, IPresentationPluginV3& plugin) {
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

void SessionRunner::create(const SessionInput& input) {
    OwnedPlugin plugin(module.create(input.pointer("name")), PluginOwner(module));
    const bool hasObject = plugin != nullptr;
    NamedObject& object =
        objects.try_emplace(input.object(), NamedObject{{nullptr, PluginOwner(module)}, {}, false})
            .first->second;
    if (hasObject) {
        if (object.plugin) {
            replaced.push_back(std::move(object.plugin));
        }
        object = {std::move(plugin), {}, false};
    }
    recorder.created(hasObject);
}

void SessionRunner::dispose(const SessionInput& input) {
    IPresentationPluginV3* plugin = nullptr;
    if (!input.isNull("object")) {
        NamedObject& object = objects.find(input.object())->second;
        plugin = object.plugin.release();
        object.wasDisposed = plugin != nullptr;
    }
    recorder.result(module.dispose(plugin));
}

void SessionRunner::registerCallbacks(const SessionInput& input, IPresentationPluginV3& plugin) {
    HostCallbacks* given = input.isNull("callbacks") ? nullptr : callbacksOf(input.text("callbacks"));
    recorder.result(plugin.Register(input.pointer("arguments"), input.count("handle"), given,
                                    input.flag("translator") ? &translator : nullptr));
}

void SessionRunner::start(const SessionInput& input, IPresentationPluginV3& plugin) {
    starting = &objects.find(input.object())->second.connections;
    const std::int32_t result = plugin.Start();
    starting = nullptr;
    recorder.result(result);
}

void SessionRunner::get(const SessionInput& input, IPresentationPluginV3& plugin) {
    auto size = static_cast<std::uint32_t>(input.count("size"));
    const bool hasBuffer = input.flag("buffer");
    std::string buffer(std::min<std::uint64_t>(size, greatestBuffer), '\0');
    const std::int32_t result =
        (plugin.*getterOf(input.text("what")))(hasBuffer ? buffer.data() : nullptr, &size);
    const bool isCopied = hasBuffer && result == presentationDone;
    recorder.result(result, size, isCopied ? std::optional(buffer) : std::nullopt);
}

void SessionRunner::callInert(const SessionInput& input, IPresentationPluginV3& plugin) {
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
        made = std::make_unique<HostCallbacks>(
            [this, name](std::uintptr_t handle, const char* xml) { recorder.notice(name, handle, xml); },
            [this, name](std::uintptr_t handle) { recorder.stopDone(name, handle); });
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
