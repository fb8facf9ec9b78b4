#include "presentation-plugin/HostCallbacks.h"

void HostCallbacks::set(const Snapshot& registered) {
    const common2::MutexLock lock(mutex);
    current = registered;
}

HostCallbacks::Snapshot HostCallbacks::get() const {
    const common2::MutexLock lock(mutex);
    return current;
}
