/// What keeps a device current: config sync, posture reports, statuses at intervals, the certificate's end.
#pragma once

#include "backend-sim/RequestReader.h"
#include "backend-sim/ServiceCore.h"

#include <chrono>
#include <cstdint>

namespace sim {

/// Belongs to a step of the core.
class Upkeep {
public:
    explicit Upkeep(ServiceCore& usedCore)
        : core(usedCore) {}

    /// Of the device's own enrollment only; ends in a status.
    void syncConfig(const Request& request);
    /// Ends in a status.
    void reportPosture();

    /// Makes the timers fit the state. To be called after every step.
    void arrange();

private:
    void arrangeStatus();
    void arrangeExpiry();
    void sendStatus();
    void expireCertificate();

    ServiceCore& core;
    std::chrono::milliseconds interval{0}; ///< between statuses, as it is arranged
    DeliveryThread::Owner statusTimer;
    Time expiry; ///< of the certificate, as it is arranged
    DeliveryThread::Owner expiryTimer;
};

} // namespace sim
