#include "presentation-plugin/HostCallbacks.h"

#include "common2/logging/Common2Loggers.h"
#include "common2/util/ForeignCall.h"
#include "wren/PresentationPlugin.h"

namespace {

template <class Call>
void callHost(std::string_view function, Call call) {
    if (!common2::foreignCall(call)) {
        COMMON2_LOG(DBG_ERROR, function) << "The host's callback ended with an exception";
    }
}

} // namespace

void HostCallbacks::Snapshot::notify(const char* xml, std::string_view function) const {
    callHost(function, [&] { presentationCB->Notify(hostHandle, xml); });
}

void HostCallbacks::Snapshot::stopDone(std::string_view function) const {
    callHost(function, [&] { presentationCB->StopDone(hostHandle); });
}

void HostCallbacks::set(const Snapshot& registered) {
    const common2::MutexLock lock(mutex);
    current = registered;
}

HostCallbacks::Snapshot HostCallbacks::get() const {
    const common2::MutexLock lock(mutex);
    return current;
}
