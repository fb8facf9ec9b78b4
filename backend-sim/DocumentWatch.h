/// Who watches the documents on their way to the receivers.
#pragma once

#include "backend-sim/WrenSim.h"

namespace sim {

/// As `wrensim_watch_documents` takes it.
struct DocumentWatch {
    WrenSimBeforeDocument before = nullptr;
    WrenSimAfterDocument after = nullptr;
    void* context = nullptr;
};

} // namespace sim
