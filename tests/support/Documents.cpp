#include "tests/support/Documents.h"

#include <boost/json/array.hpp>
#include <boost/json/object.hpp>
#include <boost/json/parse.hpp>
#include <boost/json/serialize.hpp>

#include <stdexcept>
#include <utility>

namespace test {
namespace {

namespace json = boost::json;

constexpr std::int64_t second = 10'000'000;

/// The parent of a place in a document, and the last step to it.
struct Place {
    json::value& parent;
    std::string step;
};

Place find(json::value& document, std::string_view place) {
    const std::size_t slash = place.rfind('/');
    if (slash == std::string_view::npos) {
        throw std::invalid_argument("a place in a document starts with a slash");
    }
    return {document.at_pointer(place.substr(0, slash)), std::string(place.substr(slash + 1))};
}

json::value destinationDocument() {
    return {{"host", "wiki.corp.example"}, {"port", 443}, {"proto", "tcp"}, {"timestamp", 1700000000}};
}

DataplaneDestination_t destination() {
    return {.host = "wiki.corp.example",
            .port = 443,
            .proto = DataplaneProto::Tcp,
            .timestamp = 1700000000 * second};
}

json::value alertDocument(std::size_t number) {
    const std::string suffix = " " + std::to_string(number);
    return {{"category", "policy_error"},
            {"code", number},
            {"timestamp", 1700000000 + number},
            {"title", "Alert" + suffix},
            {"short_message", "Short" + suffix},
            {"long_message", "Long" + suffix},
            {"tile_message", "Tile" + suffix},
            {"toast_message", "Toast" + suffix},
            {"url", "https://help.example/" + std::to_string(number)},
            {"url_label", "Help" + suffix},
            {"destinations", json::array{destinationDocument()}}};
}

DataplaneAlert_t alert(std::size_t number) {
    const std::string suffix = " " + std::to_string(number);
    return {.category = DataplaneAlertCategory::PolicyError,
            .code = static_cast<std::uint32_t>(number),
            .timestamp = (1700000000 + static_cast<std::int64_t>(number)) * second,
            .title = "Alert" + suffix,
            .short_message = "Short" + suffix,
            .long_message = "Long" + suffix,
            .tile_message = "Tile" + suffix,
            .toast_message = "Toast" + suffix,
            .url = "https://help.example/" + std::to_string(number),
            .url_label = "Help" + suffix,
            .destinations = {destination()}};
}

json::value authRequestDocument(std::size_t number) {
    const std::string name = std::to_string(number);
    return {{"timestamp", 1700000000 + number},
            {"context_id", "context-" + name},
            {"start_url", "https://login.example/start/" + name},
            {"end_url", "https://login.example/end/" + name},
            {"cookie_name", "cookie-" + name},
            {"destination", destinationDocument()}};
}

DataplaneAuthRequest_t authRequest(std::size_t number) {
    const std::string name = std::to_string(number);
    return {.timestamp = (1700000000 + static_cast<std::int64_t>(number)) * second,
            .context_id = "context-" + name,
            .start_url = "https://login.example/start/" + name,
            .end_url = "https://login.example/end/" + name,
            .cookie_name = "cookie-" + name,
            .destination = destination()};
}

json::value activeStatusDocument() {
    return {{"version", "1"},
            {"state", "active"},
            {"substate", ""},
            {"interceptor_connectivity", "ok"},
            {"posture_connectivity", "ok"},
            {"hw_key_store_availability", "ok"},
            {"service_status", "ok"},
            {"enrollment_choices", json::array{}},
            {"enrollments", json::array{}}};
}

StatusNotification_t activeStatus() {
    StatusNotification_t status;
    status.version = "1";
    status.state = "active";
    status.interceptor_connectivity = InterceptorConnectivity::Ok;
    status.posture_connectivity = PostureConnectivity::Ok;
    status.hw_key_store_availability = HwKeyStoreAvailability::Ok;
    status.service_status = ServiceStatus::Ok;
    return status;
}

constexpr const char* enrollmentText = R"({
    "state": "active",
    "substate": "none",
    "id": "enrollment-1",
    "type": "user",
    "label": "Example Corp",
    "enrollment_time": 1690000000,
    "unenroll_allowed": true,
    "reenroll_allowed": true,
    "config_sync_status": {
        "config_sync_interval_min": 30,
        "last_config_sync_success": 1699999000,
        "fail_cnt_since_last_sync_success": 0,
        "server_connectivity": "ok"
    },
    "certificate_status": {
        "certificate_expiration_time": 1730000000,
        "last_renewal_attempt_time": 1698000000,
        "failed_renewal_attempt_cnt": 0,
        "certificate_state": "ok",
        "certificate_renewal_status": "ok",
        "certificate_urns": {
            "org_id": "org-1",
            "user_id": "user-1",
            "plv_id": "plv-1",
            "quill_device_id": "device-1",
            "user_name": "Robin"
        }
    },
    "dataplane_status": {
        "flow_cnt_udp": 101,
        "flow_cnt_tcp": 102,
        "active_flow_cnt_udp": 3,
        "active_flow_cnt_tcp": 4,
        "allowed_flow_cnt_udp": 95,
        "allowed_flow_cnt_tcp": 96,
        "blocked_flow_cnt_udp": 7,
        "blocked_flow_cnt_tcp": 8,
        "authenticated_flow_cnt_udp": 9,
        "authenticated_flow_cnt_tcp": 10,
        "server_connectivity": "ok",
        "proxy_configs": [{"label": "Main proxy", "status": "active"}]
    },
    "network_status": {
        "fingerprints": [{"label": "Office", "status": "Matched"}]
    }
})";

Enrollment_t enrollment() {
    return {
        .state = "active",
        .substate = "none",
        .id = "enrollment-1",
        .type = "user",
        .label = "Example Corp",
        .enrollment_time = 1690000000 * second,
        .unenroll_allowed = true,
        .reenroll_allowed = true,
        .config_sync_status = {.config_sync_interval_min = 30,
                               .last_config_sync_success = 1699999000 * second,
                               .fail_cnt_since_last_sync_success = 0,
                               .server_connectivity = ServerConnectivity::Ok},
        .certificate_status = {.certificate_expiration_time = 1730000000 * second,
                               .last_renewal_attempt_time = 1698000000 * second,
                               .failed_renewal_attempt_cnt = 0,
                               .certificate_state = CertificateState::Ok,
                               .certificate_renewal_status = CertificateRenewalStatus::Ok,
                               .certificate_urns = {.org_id = "org-1",
                                                    .user_id = "user-1",
                                                    .plv_id = "plv-1",
                                                    .quill_device_id = "device-1",
                                                    .user_name = "Robin"}},
        .dataplane_status = {.flow_cnt_udp = 101,
                             .flow_cnt_tcp = 102,
                             .active_flow_cnt_udp = 3,
                             .active_flow_cnt_tcp = 4,
                             .allowed_flow_cnt_udp = 95,
                             .allowed_flow_cnt_tcp = 96,
                             .blocked_flow_cnt_udp = 7,
                             .blocked_flow_cnt_tcp = 8,
                             .authenticated_flow_cnt_udp = 9,
                             .authenticated_flow_cnt_tcp = 10,
                             .server_connectivity = ServerConnectivity::Ok,
                             .proxy_configs = {{.label = "Main proxy", .status = "active"}}},
        .network_status = {.fingerprints = {{.label = "Office", .status = FingerprintStatus::Matched}}},
    };
}

json::value progressDocument(std::string_view status, std::string_view substatus) {
    return {{"version", "1"},
            {"status", status},
            {"substatus", substatus},
            {"enrollment_id", "enrollment-1"},
            {"enrollment_context", "context-1"}};
}

} // namespace

json::value with(json::value document, std::string_view place, json::value content) {
    const Place found = find(document, place);
    if (found.parent.is_array()) {
        found.parent.as_array().at(std::stoul(found.step)) = std::move(content);
    } else {
        found.parent.as_object()[found.step] = std::move(content);
    }
    return document;
}

json::value without(json::value document, std::string_view place) {
    const Place found = find(document, place);
    if (found.parent.as_object().erase(found.step) != 1) {
        throw std::invalid_argument("the document does not hold " + std::string(place));
    }
    return document;
}

std::string textOf(const json::value& document) { return json::serialize(document); }

json::value initStatusDocument() {
    return {{"version", "1"},
            {"state", "init"},
            {"enrollment_choices", json::array{}},
            {"enrollments", json::array{}}};
}

StatusNotification_t initStatus() {
    StatusNotification_t status;
    status.version = "1";
    status.state = "init";
    return status;
}

json::value errorStatusDocument(std::string_view substate) {
    return {{"version", "1"}, {"state", "error"}, {"substate", substate}};
}

StatusNotification_t errorStatus(std::string_view substate) {
    StatusNotification_t status;
    status.version = "1";
    status.state = "error";
    status.substate = substate;
    return status;
}

json::value notEnrolledStatusDocument() {
    return with(activeStatusDocument(), "/enrollment_choices",
                json::array{{{"state", "available"},
                             {"id", "choice-1"},
                             {"type", "user"},
                             {"label", "Example Corp"},
                             {"enroll_allowed", true}}});
}

StatusNotification_t notEnrolledStatus() {
    StatusNotification_t status = activeStatus();
    status.enrollment_choices = {{.state = "available",
                                  .id = "choice-1",
                                  .type = "user",
                                  .label = "Example Corp",
                                  .enroll_allowed = true}};
    return status;
}

json::value enrolledStatusDocument() {
    return with(activeStatusDocument(), "/enrollments", json::array{json::parse(enrollmentText)});
}

StatusNotification_t enrolledStatus() {
    StatusNotification_t status = activeStatus();
    status.enrollments = {enrollment()};
    return status;
}

json::value dataplaneDocument(std::size_t alerts, std::size_t authRequests) {
    json::array alertList;
    for (std::size_t number = 1; number <= alerts; ++number) {
        alertList.push_back(alertDocument(number));
    }
    json::array requestList;
    for (std::size_t number = 1; number <= authRequests; ++number) {
        requestList.push_back(authRequestDocument(number));
    }
    return {{"version", "1"}, {"dataplane_alerts", alertList}, {"dataplane_auth_requests", requestList}};
}

DataplaneNotification_t dataplane(std::size_t alerts, std::size_t authRequests) {
    DataplaneNotification_t notification;
    notification.version = "1";
    for (std::size_t number = 1; number <= alerts; ++number) {
        notification.dataplane_alerts.push_back(alert(number));
    }
    for (std::size_t number = 1; number <= authRequests; ++number) {
        notification.dataplane_auth_requests.push_back(authRequest(number));
    }
    return notification;
}

json::value enrollmentStatusDocument(std::string_view status, std::string_view substatus) {
    return progressDocument(status, substatus);
}

EnrollmentStatusNotification_t enrollmentStatus(EnrollmentStatus status, EnrollmentSubstatus substatus) {
    return {.version = "1",
            .status = status,
            .substatus = substatus,
            .enrollment_id = "enrollment-1",
            .enrollment_context = "context-1"};
}

json::value enrollmentAuthRequestDocument() {
    return {{"version", "1"},
            {"enrollment_id", "enrollment-1"},
            {"start_url", "https://login.example/start"},
            {"end_url", "https://login.example/end"},
            {"cookie_name", "enrollment-cookie"},
            {"enrollment_context", "context-1"}};
}

EnrollmentAuthRequest_t enrollmentAuthRequest() {
    return {.version = "1",
            .enrollment_id = "enrollment-1",
            .start_url = "https://login.example/start",
            .end_url = "https://login.example/end",
            .cookie_name = "enrollment-cookie",
            .enrollment_context = "context-1"};
}

json::value unenrollmentStatusDocument(std::string_view status, std::string_view substatus) {
    return progressDocument(status, substatus);
}

UnenrollmentStatusNotification_t unenrollmentStatus(UnenrollmentStatus status,
                                                    UnenrollmentSubstatus substatus) {
    return {.version = "1",
            .status = status,
            .substatus = substatus,
            .enrollment_id = "enrollment-1",
            .enrollment_context = "context-1"};
}

} // namespace test
