#include "host/serve/TurnGate.h"

namespace host::serve {

void TurnGate::enter(bool stops) {
    std::unique_lock lock(mutex);
    const std::uint64_t own = ++latest;
    line.push_back(own);
    moved.wait(lock, [&] { return line.front() == own; });
    isStopping = stops;
    moved.notify_all();
}

bool TurnGate::enterWithDocument() {
    std::unique_lock lock(mutex);
    if (isStopping) {
        return false;
    }
    const std::uint64_t own = ++latest;
    line.push_back(own);
    moved.wait(lock, [&] { return line.front() == own || isStopping; });
    if (line.front() == own) {
        return true;
    }
    std::erase(line, own);
    return false;
}

void TurnGate::leave() {
    const std::lock_guard lock(mutex);
    line.pop_front();
    isStopping = false;
    moved.notify_all();
}

} // namespace host::serve
