#include "tests/backend-sim/Receiver.h"

#include <ostream>

namespace test {

void PrintTo(const Received& received, std::ostream* out) {
    *out << received.operation << ' ' << received.json;
}

std::vector<Received> Receiver::all() const {
    const std::lock_guard lock(mutex);
    return received;
}

std::vector<Received> Receiver::waitFor(std::size_t count) const {
    std::unique_lock lock(mutex);
    changed.wait(lock, [&] { return received.size() >= count; });
    return received;
}

std::thread::id Receiver::lastThread() const {
    const std::lock_guard lock(mutex);
    return thread;
}

void Receiver::take(const char* operation, const char* json) {
    if (inside) {
        inside();
    }
    const std::lock_guard lock(mutex);
    received.push_back({operation, json});
    thread = std::this_thread::get_id();
    changed.notify_all();
}

void Event::happen() {
    const std::lock_guard lock(mutex);
    happened = true;
    changed.notify_all();
}

void Event::await() {
    std::unique_lock lock(mutex);
    changed.wait(lock, [this] { return happened; });
}

} // namespace test
