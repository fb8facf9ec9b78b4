#include "backend-sim/Device.h"

#include <algorithm>
#include <utility>

namespace sim {
namespace {

void fill(Time& time, std::int64_t value) {
    if (!time) {
        time = value;
    }
}

/// A server of which nothing is known is not known to fail.
bool answers(Word server) { return server == "ok" || server == "unknown"; }

} // namespace

const Choice* Device::openChoice(const std::string& id) const {
    if (isEnrolled) {
        return nullptr;
    }
    const auto found = std::find_if(choices.begin(), choices.end(), [&](const Choice& choice) {
        return choice.id == id && choice.enrollAllowed;
    });
    return found == choices.end() ? nullptr : &*found;
}

void Device::settle(std::int64_t now) {
    for (DataplaneAlert& alert : dataplaneAlerts) {
        fill(alert.time, now);
    }
    for (DataplaneAuthRequest& request : dataplaneAuthRequests) {
        fill(request.time, now);
    }
    if (!isEnrolled) {
        return;
    }
    fill(enrollment.time, now);
    fill(configSync.lastSuccess, answers(configSync.server) ? now : 0);
    fill(certificate.lastRenewalAttempt, 0);
    fill(certificate.expires, now + certificate.lifetime);
    if (certificate.state == "ok" && certificate.expires <= now) {
        certificate.expires = now + certificate.lifetime;
    } else if (certificate.state == "expired") {
        certificate.expires = std::min(*certificate.expires, now);
    }
}

void Device::enroll(std::string id, const Choice& choice, std::int64_t now) {
    isEnrolled = true;
    enrollment.id = std::move(id);
    enrollment.type = choice.type;
    enrollment.label = choice.label;
    configSync.lastSuccess.reset();
    issueCertificate(now);
}

void Device::renew(std::int64_t now) { issueCertificate(now); }

void Device::unenroll() {
    isEnrolled = false;
    enrollment.time.reset();
    replaceCertificate();
    configSync.lastSuccess.reset();
    configSync.failures = 0;
    flows = {};
    dataplaneAlerts.clear();
    dataplaneAuthRequests.clear();
}

void Device::syncConfig(std::int64_t now) {
    if (answers(configSync.server)) {
        configSync.lastSuccess = now;
        configSync.failures = 0;
    } else {
        ++configSync.failures;
    }
}

bool Device::expireCertificate(std::int64_t now) {
    if (!isEnrolled || certificate.state != "ok" || certificate.expires > now) {
        return false;
    }
    certificate.state = "expired";
    return true;
}

void Device::countTraffic() {
    if (isEnrolled) {
        std::transform(flows.begin(), flows.end(), traffic.begin(), flows.begin(), std::plus<>());
    }
}

void Device::reportPosture() {
    if (posture == "ok") {
        std::erase_if(dataplaneAlerts,
                      [](const DataplaneAlert& alert) { return alert.category == "posture_error"; });
    }
}

bool Device::removeAuthRequest(const std::string& contextId) {
    return std::erase_if(dataplaneAuthRequests, [&](const DataplaneAuthRequest& request) {
               return request.contextId == contextId;
           }) != 0;
}

void Device::issueCertificate(std::int64_t now) {
    enrollment.time = now;
    replaceCertificate();
    settle(now);
}

void Device::replaceCertificate() {
    Certificate fresh;
    fresh.lifetime = certificate.lifetime;
    certificate = fresh;
}

} // namespace sim
