#include "backend-sim/Documents.h"

#include <boost/json/serialize.hpp>
#include <boost/json/value.hpp>

#include <cstddef>

namespace sim {
namespace {

namespace json = boost::json;

constexpr const char* version = "1";

json::object statusHead(std::string_view state, std::string_view substate, const Device& device) {
    return {
        {"version", version},
        {"state", state},
        {"substate", substate},
        {"interceptor_connectivity", device.interceptor},
        {"posture_connectivity", device.posture},
        {"hw_key_store_availability", device.keyStore},
        {"service_status", device.serviceStatus},
    };
}

/// @param write makes the JSON of an element
template <class Record, class Write>
json::array listOf(const std::vector<Record>& records, Write write) {
    json::array list;
    for (const Record& record : records) {
        list.emplace_back(write(record));
    }
    return list;
}

json::object choiceOf(const Choice& choice) {
    return {
        {"state", choice.state},
        {"id", choice.id},
        {"type", choice.type},
        {"label", choice.label},
        {"enroll_allowed", choice.enrollAllowed},
    };
}

json::object configSyncStatus(const ConfigSync& sync) {
    return {
        {"config_sync_interval_min", sync.intervalMinutes},
        {"last_config_sync_success", sync.lastSuccess.value_or(0)},
        {"fail_cnt_since_last_sync_success", sync.failures},
        {"server_connectivity", sync.server},
    };
}

json::object certificateStatus(const Certificate& certificate, const Identity& identity) {
    return {
        {"certificate_expiration_time", certificate.expires.value_or(0)},
        {"last_renewal_attempt_time", certificate.lastRenewalAttempt.value_or(0)},
        {"failed_renewal_attempt_cnt", certificate.failedRenewals},
        {"certificate_state", certificate.state},
        {"certificate_renewal_status", certificate.renewal},
        {"certificate_urns",
         {{"org_id", identity.orgId},
          {"user_id", identity.userId},
          {"plv_id", identity.plvId},
          {"quill_device_id", identity.deviceId},
          {"user_name", identity.userName}}},
    };
}

json::object dataplaneStatus(const Device& device) {
    json::object status;
    for (std::size_t i = 0; i < flowCounterNames.size(); ++i) {
        status.emplace(flowCounterNames[i], device.flows[i]);
    }
    status.emplace("server_connectivity", device.dataplaneServer);
    status.emplace("proxy_configs", listOf(device.proxies, [](const Proxy& proxy) {
                       return json::object{{"label", proxy.label}, {"status", proxy.status}};
                   }));
    return status;
}

json::object networkStatus(const Device& device) {
    return {{"fingerprints", listOf(device.fingerprints, [](const Fingerprint& fingerprint) {
                 return json::object{{"label", fingerprint.label}, {"status", fingerprint.status}};
             })}};
}

json::object enrollmentOf(const Device& device) {
    const Enrollment& enrollment = device.enrollment;
    return {
        {"state", enrollment.state},
        {"substate", enrollment.substate},
        {"id", enrollment.id},
        {"type", enrollment.type},
        {"label", enrollment.label},
        {"enrollment_time", enrollment.time.value_or(0)},
        {"unenroll_allowed", enrollment.unenrollAllowed},
        {"reenroll_allowed", enrollment.reenrollAllowed},
        {"config_sync_status", configSyncStatus(device.configSync)},
        {"certificate_status", certificateStatus(device.certificate, device.identity)},
        {"dataplane_status", dataplaneStatus(device)},
        {"network_status", networkStatus(device)},
    };
}

json::object destinationOf(const Destination& destination, const Time& time) {
    return {
        {"host", destination.host},
        {"port", destination.port},
        {"proto", destination.protocol},
        {"timestamp", time.value_or(0)},
    };
}

json::object alertOf(const DataplaneAlert& alert) {
    return {
        {"category", alert.category},
        {"code", alert.code},
        {"timestamp", alert.time.value_or(0)},
        {"title", alert.title},
        {"short_message", alert.shortMessage},
        {"long_message", alert.longMessage},
        {"tile_message", alert.tileMessage},
        {"toast_message", alert.toastMessage},
        {"url", alert.url},
        {"url_label", alert.urlLabel},
        {"destinations",
         listOf(alert.destinations,
                [&](const Destination& destination) { return destinationOf(destination, alert.time); })},
    };
}

/// A text as the value of a URL's parameter.
std::string percentEncoded(std::string_view text) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    constexpr std::string_view plain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~";
    std::string encoded;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        encoded += plain.find(c) != plain.npos
                       ? std::string(1, c)
                       : std::string{'%', digits[byte / digits.size()], digits[byte % digits.size()]};
    }
    return encoded;
}

json::object authRequestOf(const DataplaneAuthRequest& request, const Login& login) {
    return {
        {"timestamp", request.time.value_or(0)},
        {"context_id", request.contextId},
        {"start_url", loginUrl(login, request.contextId)},
        {"end_url", login.endUrl},
        {"cookie_name", login.cookieName},
        {"destination", destinationOf(request.destination, request.time)},
    };
}

} // namespace

std::string loginUrl(const Login& login, std::string_view id) {
    const char* separator = login.startUrl.find('?') == std::string::npos ? "?" : "&";
    return login.startUrl + separator + "login=" + percentEncoded(id);
}

std::string initStatusDocument() {
    json::object status = statusHead("init", "", Device{});
    status.emplace("enrollment_choices", json::array{});
    status.emplace("enrollments", json::array{});
    return json::serialize(status);
}

std::string statusDocument(const Device& device) {
    if (device.isDown()) {
        return json::serialize(statusHead("error", device.serviceError, device));
    }
    json::object status = statusHead("active", "", device);
    status.emplace("enrollment_choices",
                   device.isEnrolled ? json::array{} : listOf(device.choices, choiceOf));
    status.emplace("enrollments", device.isEnrolled ? json::array{enrollmentOf(device)} : json::array{});
    return json::serialize(status);
}

std::string progressDocument(const EnrollmentSubject& subject, std::string_view status,
                             std::string_view substatus) {
    return json::serialize(json::object{
        {"version", version},
        {"status", status},
        {"substatus", substatus},
        {"enrollment_id", subject.id},
        {"enrollment_context", subject.context},
    });
}

std::string enrollmentAuthRequestDocument(const EnrollmentSubject& subject, const Login& login) {
    return json::serialize(json::object{
        {"version", version},
        {"enrollment_id", subject.id},
        {"start_url", loginUrl(login, subject.id)},
        {"end_url", login.endUrl},
        {"cookie_name", login.cookieName},
        {"enrollment_context", subject.context},
    });
}

std::string dataplaneDocument(const Device& device, const Login& login) {
    json::object document{
        {"version", version},
        {"dataplane_alerts", json::array{}},
        {"dataplane_auth_requests", json::array{}},
    };
    if (device.isEnrolled) {
        document["dataplane_alerts"] = listOf(device.dataplaneAlerts, alertOf);
        document["dataplane_auth_requests"] =
            listOf(device.dataplaneAuthRequests,
                   [&](const DataplaneAuthRequest& request) { return authRequestOf(request, login); });
    }
    return json::serialize(document);
}

} // namespace sim
