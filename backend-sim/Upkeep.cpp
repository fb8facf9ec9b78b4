#include "backend-sim/Upkeep.h"

#include <algorithm>
#include <string>

namespace sim {

void Upkeep::syncConfig(const Request& request) {
    core.later(core.scenario().delays.configSync, [this, id = valueOf(request, "enrollment_id")] {
        if (!core.device().hasEnrollment(id)) {
            return;
        }
        core.reach(moment::configSync);
        if (core.device().hasEnrollment(id) && !core.device().isDown()) {
            core.device().syncConfig(core.now());
        }
        core.publishStatus();
    });
}

void Upkeep::reportPosture() {
    core.later(core.scenario().delays.postureReport, [this] {
        core.reach(moment::postureReport);
        if (!core.device().isDown()) {
            core.device().reportPosture();
        }
        core.publishStatus();
        core.publishDataplane();
    });
}

void Upkeep::arrange() {
    arrangeStatus();
    arrangeExpiry();
}

void Upkeep::arrangeStatus() {
    const auto wanted = core.paced(core.scenario().delays.statusInterval);
    if (wanted == interval) {
        return;
    }
    interval = wanted;
    statusTimer = DeliveryThread::newOwner(); // the one before is dropped
    if (interval.count() != 0) {
        core.laterByItself(interval, statusTimer, [this] { sendStatus(); });
    }
}

void Upkeep::sendStatus() {
    core.device().countTraffic();
    core.publishStatus();
    interval = std::chrono::milliseconds::zero(); // the next one is arranged at the end of this step
}

void Upkeep::arrangeExpiry() {
    const Device& device = core.device();
    const Time wanted = device.isEnrolled ? device.certificate.expires : Time();
    if (wanted == expiry) {
        return;
    }
    expiry = wanted;
    expiryTimer = DeliveryThread::newOwner();
    if (expiry) {
        const std::chrono::seconds left(std::max<std::int64_t>(*expiry - core.now(), 0));
        core.laterByItself(left, expiryTimer, [this] { expireCertificate(); });
    }
}

void Upkeep::expireCertificate() {
    if (core.device().expireCertificate(core.now())) {
        core.publishStatus();
    }
}

} // namespace sim
