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
    if (wanted != interval) {
        interval = wanted;
        ++statusTimer;
        if (interval.count() != 0) {
            core.laterByItself(interval, [this, own = statusTimer] {
                if (own == statusTimer) {
                    sendStatus();
                }
            });
        }
    }
}

void Upkeep::sendStatus() {
    core.device().countTraffic();
    core.publishStatus();
    interval = std::chrono::milliseconds::zero(); // the next one is arranged at the end of this step
}

void Upkeep::arrangeExpiry() {
    const Device& device = core.device();
    if (!device.isEnrolled || device.certificate.expires == expiry) {
        return;
    }
    expiry = device.certificate.expires;
    const std::chrono::seconds left(std::max<std::int64_t>(expiry.value_or(0) - core.now(), 0));
    core.laterByItself(left, [this] {
        if (core.device().expireCertificate(core.now())) {
            core.publishStatus();
        }
    });
}

} // namespace sim
