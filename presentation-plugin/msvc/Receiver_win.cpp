#include "presentation-plugin/msvc/Receiver.h"

#include <cstring>

namespace msvc {

Receiver::Receiver(const Exports& library)
    : exports(library) {
    const void* table = nullptr;
    std::memcpy(&table, static_cast<void*>(this), sizeof table);
    exports.constructCallbacks(this);
    std::memcpy(static_cast<void*>(this), &table, sizeof table); // the constructor has set its own class's
}

Receiver::~Receiver() { exports.destructCallbacks(this); }

void Receiver::setTarget(const std::weak_ptr<IQuillApiCallbacks>& receiver) {
    const std::lock_guard lock(mutex);
    target = receiver;
}

void Receiver::handOn(void (IQuillApiCallbacks::*document)(const char*), const char* json) {
    std::shared_ptr<IQuillApiCallbacks> receiver;
    {
        const std::lock_guard lock(mutex);
        receiver = target.lock();
    }
    if (receiver) {
        ((*receiver).*document)(json);
    }
}

void Receiver::StatusNotification(const char* json) noexcept {
    handOn(&IQuillApiCallbacks::StatusNotification, json);
}

void Receiver::EnrollmentStatusNotification(const char* json) noexcept {
    handOn(&IQuillApiCallbacks::EnrollmentStatusNotification, json);
}

void Receiver::EnrollmentAuthRequest(const char* json) noexcept {
    handOn(&IQuillApiCallbacks::EnrollmentAuthRequest, json);
}

void Receiver::UnenrollmentStatusNotification(const char* json) noexcept {
    handOn(&IQuillApiCallbacks::UnenrollmentStatusNotification, json);
}

void Receiver::DataplaneNotification(const char* json) noexcept {
    handOn(&IQuillApiCallbacks::DataplaneNotification, json);
}

void* Receiver::deletingDestructor(unsigned) noexcept { return this; }

LentReceiver::LentReceiver(const Exports& library)
    : held(library)
    , block(common2::LentBlock::make()) {}

LentReceiver::~LentReceiver() { block->end(); }

WeakPointer<Callbacks> LentReceiver::pointer(const std::weak_ptr<IQuillApiCallbacks>& receiver) {
    held.setTarget(receiver);
    block->addObserver();
    return {&held, reinterpret_cast<ControlBlock*>(block)};
}

} // namespace msvc
