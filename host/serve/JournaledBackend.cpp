#include "host/serve/JournaledBackend.h"

#include "host/OutputLines.h"
#include "host/SessionFormat.h"

#include <string>
#include <utility>

namespace host::serve {

std::span<const std::string_view> documentNames() { return lineRules("deliver").front().keys.front().words; }

JournaledBackend::JournaledBackend(const BackendControls& usedControls, Journal& usedJournal,
                                   TurnGate& usedGate, CallWatch& watched)
    : controls(usedControls)
    , journal(usedJournal)
    , gate(usedGate)
    , calls(watched) {
    controls.observe(&JournaledBackend::onApiCall, this);
    controls.watchDocuments(&JournaledBackend::onDocument, &JournaledBackend::onDocumentDone, this);
}

JournaledBackend::~JournaledBackend() {
    controls.forgetReceivers();
    controls.watchDocuments(nullptr, nullptr, nullptr);
    controls.observe(nullptr, nullptr);
}

void JournaledBackend::onApiCall(void* context, std::uint64_t, const char* operation, const char* json) {
    static_cast<JournaledBackend*>(context)->journal.output(apiLine(operation, json));
}

bool JournaledBackend::onDocument(void* context, std::uint64_t, WrenSimDocument document, const char* json) {
    auto& backend = *static_cast<JournaledBackend*>(context);
    if (!backend.gate.enterWithDocument()) {
        return false;
    }
    const std::string_view name = documentNames()[document];
    boost::json::object line{{"do", "deliver"}, {"document", name}};
    addText(line, "json", json);
    backend.journal.beginInput(std::move(line));
    backend.delivery.emplace(backend.calls, std::string(name));
    return true;
}

void JournaledBackend::onDocumentDone(void* context, std::uint64_t, WrenSimDocument) {
    auto& backend = *static_cast<JournaledBackend*>(context);
    backend.delivery.reset();
    backend.journal.endInput();
    backend.gate.leave();
}

} // namespace host::serve
