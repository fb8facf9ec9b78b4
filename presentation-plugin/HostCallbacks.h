/// The host's side of the registration.
#pragma once

#include "common2/util/Mutex.h"

#include <cstdint>
#include <string_view>

class IPresentationCB;
class ITranslator;

/// What `Register` was given. Read on paths that run without the plugin's mutex while it is written under it,
/// so it is handed out as a copy of one moment; nothing is held while the host is called.
class HostCallbacks {
public:
    struct Snapshot {
        std::uintptr_t hostHandle = 0;             ///< passed back first on every callback
        IPresentationCB* presentationCB = nullptr; ///< not owned; null while nobody is registered
        ITranslator* translator = nullptr;         ///< not owned; never called

        /// Calls back; only while somebody is registered. What the host answers is ignored.
        /// @param function in whose name an exception of the host is logged, where it can be caught
        void notify(const char* xml, std::string_view function) const;
        void stopDone(std::string_view function) const;
    };

    void set(const Snapshot& registered);
    Snapshot get() const;

private:
    mutable common2::Mutex mutex;
    Snapshot current COMMON2_GUARDED_BY(mutex);
};
