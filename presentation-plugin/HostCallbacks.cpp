#include "presentation-plugin/HostCallbacks.h"

void HostCallbacks::set(const Snapshot& registered) {
    const std::lock_guard lock(mutex);
    current = registered;
}

HostCallbacks::Snapshot HostCallbacks::get() const {
    const std::lock_guard lock(mutex);
    return current;
}
