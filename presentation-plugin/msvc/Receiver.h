/// A receiver of the plugin as a service library of Microsoft's compiler holds it.
#pragma once

#include "common2/util/LentBlock.h"
#include "presentation-plugin/msvc/Service.h"

#include <array>
#include <cstddef>
#include <memory>
#include <mutex>

namespace msvc {

/// Hands documents on to the receiver that it stands for, and keeps that alive during each call only. The
/// library's constructor and destructor of the class run for it.
class Receiver final : public Callbacks {
public:
    explicit Receiver(const Exports& library);
    Receiver(const Receiver&) = delete;
    Receiver& operator=(const Receiver&) = delete;
    ~Receiver();

    /// Sets the receiver that it stands for. Until then, documents are dropped.
    void setTarget(const std::weak_ptr<IQuillApiCallbacks>& receiver);

    void StatusNotification(const char* json) noexcept override;
    void EnrollmentStatusNotification(const char* json) noexcept override;
    void EnrollmentAuthRequest(const char* json) noexcept override;
    void UnenrollmentStatusNotification(const char* json) noexcept override;
    void DataplaneNotification(const char* json) noexcept override;
    /// Its owner destroys it: a call from elsewhere does nothing.
    void* deletingDestructor(unsigned flags) noexcept override;

private:
    void handOn(void (IQuillApiCallbacks::*document)(const char*), const char* json);

    /// The library's class has no members as far as is known; its constructor may use this if it has.
    std::array<std::byte, 60> membersOfTheClass{};
    const Exports exports;
    std::mutex mutex;
    std::weak_ptr<IQuillApiCallbacks> target; ///< under the mutex
};

/// A receiver that the library observes.
class LentReceiver {
public:
    explicit LentReceiver(const Exports& library);
    LentReceiver(const LentReceiver&) = delete;
    LentReceiver& operator=(const LentReceiver&) = delete;
    /// Waits for threads of the library that use it. It may go on observing.
    ~LentReceiver();

    /// @param receiver that it stands for from now on
    /// @return with an observation of its own
    WeakPointer<Callbacks> pointer(const std::weak_ptr<IQuillApiCallbacks>& receiver);

private:
    Receiver held;
    common2::LentBlock* const block;
};

} // namespace msvc
