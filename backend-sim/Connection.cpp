#include "backend-sim/Connection.h"

#include <array>
#include <iterator>

namespace sim {
namespace {

using Callback = void (IQuillApiCallbacks::*)(const char*);

constexpr std::array<Callback, 5> callbacks{
    &IQuillApiCallbacks::StatusNotification,    &IQuillApiCallbacks::EnrollmentStatusNotification,
    &IQuillApiCallbacks::EnrollmentAuthRequest, &IQuillApiCallbacks::UnenrollmentStatusNotification,
    &IQuillApiCallbacks::DataplaneNotification,
};
static_assert(callbacks.size() == wrensim_dataplane_notification + 1);

} // namespace

QuillApiResult Connection::start(const std::weak_ptr<IQuillApiCallbacks>& given) {
    if (given.expired()) {
        return QuillApiResult::BadParameter;
    }
    const std::lock_guard lock(mutex);
    if (phase != Phase::Made) {
        return QuillApiResult::InvalidState;
    }
    receiver = given;
    phase = Phase::Running;
    return QuillApiResult::Success;
}

QuillApiResult Connection::stop() {
    const std::lock_guard lock(mutex);
    if (phase != Phase::Running) {
        return QuillApiResult::InvalidState;
    }
    phase = Phase::Stopped;
    return QuillApiResult::Success;
}

bool Connection::isRunning() const {
    const std::lock_guard lock(mutex);
    return phase == Phase::Running;
}

bool Connection::hasReceiver() const {
    const std::lock_guard lock(mutex);
    return !receiver.expired();
}

bool Connection::deliver(WrenSimDocument document, const std::string& json,
                         const DocumentWatch& watch) const {
    const std::shared_ptr<IQuillApiCallbacks> target = lockReceiver();
    if (!target) {
        return false;
    }
    if (watch.before != nullptr && !watch.before(watch.context, ownNumber, document, json.c_str())) {
        return false;
    }
    ((*target).*callbacks[document])(json.c_str());
    if (watch.after != nullptr) {
        watch.after(watch.context, ownNumber, document);
    }
    return true;
}

void Connection::forgetReceiver() {
    std::weak_ptr<IQuillApiCallbacks> forgotten; // its end may run code of the plugin's: not under the lock
    const std::lock_guard lock(mutex);
    forgotten.swap(receiver);
}

std::shared_ptr<IQuillApiCallbacks> Connection::lockReceiver() const {
    const std::lock_guard lock(mutex);
    return receiver.lock();
}

std::shared_ptr<Connection> Connections::make() {
    const std::lock_guard lock(mutex);
    std::erase_if(byNumber, [](const auto& entry) {
        return entry.second.use_count() == 1 && !entry.second->hasReceiver();
    });
    auto made = std::make_shared<Connection>(++latest);
    byNumber.emplace(latest, made);
    return made;
}

std::shared_ptr<Connection> Connections::find(std::uint64_t number) const {
    const std::lock_guard lock(mutex);
    const auto found = byNumber.find(number == WRENSIM_LATEST_API ? latest : number);
    return found == byNumber.end() ? nullptr : found->second;
}

void Connections::forgetReceivers() {
    const std::lock_guard lock(mutex);
    for (const auto& [number, connection] : byNumber) {
        connection->forgetReceiver();
    }
}

} // namespace sim
