/// The service's side of the journal.
#pragma once

#include "host/BackendControls.h"
#include "host/serve/Journal.h"
#include "host/serve/TurnGate.h"
#include "host/strict/CallWatch.h"

#include <boost/json/object.hpp>

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

namespace host::serve {

/// The names of the service's documents, in their order.
std::span<const std::string_view> documentNames();

/// Journals what the plugin asks of the stand-in, and each document of the stand-in as an input that waits
/// for its turn.
class JournaledBackend {
public:
    /// All must outlive this object. @param watched learns of documents that do not come back
    JournaledBackend(const BackendControls& usedControls, Journal& usedJournal, TurnGate& usedGate,
                     CallWatch& watched);
    JournaledBackend(const JournaledBackend&) = delete;
    JournaledBackend& operator=(const JournaledBackend&) = delete;
    /// Lets go of the stand-in, and the stand-in of all receivers.
    ~JournaledBackend();

private:
    static void onApiCall(void* context, std::uint64_t api, const char* operation, const char* json);
    static bool onDocument(void* context, std::uint64_t api, WrenSimDocument document, const char* json);
    static void onDocumentDone(void* context, std::uint64_t api, WrenSimDocument document);

    const BackendControls& controls;
    Journal& journal;
    TurnGate& gate;
    CallWatch& calls;
    std::optional<CallWatch::Call> delivery; ///< of who has the turn
};

} // namespace host::serve
