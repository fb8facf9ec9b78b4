#include "host/validate/Documents.h"

#include <boost/json/array.hpp>
#include <boost/json/object.hpp>
#include <boost/json/parse.hpp>

#include <stdexcept>
#include <string>
#include <utility>

namespace host::validate {

namespace json = boost::json;

namespace {

/// The last step of a place, and the value that it is taken from.
std::pair<json::value*, std::string> find(json::value& document, std::string_view place) {
    const std::size_t slash = place.rfind('/');
    if (slash == std::string_view::npos) {
        throw std::invalid_argument("a place in a document begins with a slash");
    }
    return {&document.at_pointer(place.substr(0, slash)), std::string(place.substr(slash + 1))};
}

constexpr const char* activeText = R"({
    "version": "1", "state": "active", "substate": "",
    "interceptor_connectivity": "ok", "posture_connectivity": "ok", "hw_key_store_availability": "ok",
    "service_status": "ok", "enrollment_choices": [], "enrollments": []
})";

constexpr const char* choiceText = R"({
    "state": "available", "id": "choice-1", "type": "user", "label": "Example Corp", "enroll_allowed": true
})";

constexpr const char* enrollmentText = R"({
    "state": "active", "substate": "none", "id": "enrollment-1", "type": "user", "label": "Example Corp",
    "enrollment_time": 1690000000, "unenroll_allowed": true, "reenroll_allowed": true,
    "config_sync_status": {
        "config_sync_interval_min": 30, "last_config_sync_success": 1699999000,
        "fail_cnt_since_last_sync_success": 1, "server_connectivity": "ok"
    },
    "certificate_status": {
        "certificate_expiration_time": 1730000000, "last_renewal_attempt_time": 1698000000,
        "failed_renewal_attempt_cnt": 2, "certificate_state": "ok", "certificate_renewal_status": "waiting",
        "certificate_urns": {
            "org_id": "org-1", "user_id": "user-1", "plv_id": "plv-1", "quill_device_id": "device-1",
            "user_name": "Robin"
        }
    },
    "dataplane_status": {
        "flow_cnt_udp": 101, "flow_cnt_tcp": 102, "active_flow_cnt_udp": 3, "active_flow_cnt_tcp": 4,
        "allowed_flow_cnt_udp": 95, "allowed_flow_cnt_tcp": 96, "blocked_flow_cnt_udp": 7,
        "blocked_flow_cnt_tcp": 8, "authenticated_flow_cnt_udp": 9, "authenticated_flow_cnt_tcp": 10,
        "server_connectivity": "ok", "proxy_configs": [{"label": "Main proxy", "status": "active"}]
    },
    "network_status": {"fingerprints": [{"label": "Office", "status": "Matched"}]}
})";

constexpr const char* destinationText =
    R"({"host": "wiki.corp.example", "port": 443, "proto": "tcp", "timestamp": 1700000000})";

json::value alert(std::size_t number) {
    const std::string digits = std::to_string(number);
    const auto text = [&](const char* word) { return std::string(word).append(" ").append(digits); };
    return {{"category", "policy_error"},
            {"code", number},
            {"timestamp", 1700000000 + number},
            {"title", text("Alert")},
            {"short_message", text("Short")},
            {"long_message", text("Long")},
            {"tile_message", text("Tile")},
            {"toast_message", text("Toast")},
            {"url", std::string("https://help.example/").append(digits)},
            {"url_label", text("Help")},
            {"destinations", json::array{json::parse(destinationText)}}};
}

json::value request(std::size_t number) {
    const std::string digits = std::to_string(number);
    return {{"timestamp", 1700000000 + number},
            {"context_id", std::string("context-").append(digits)},
            {"start_url", std::string("https://login.example/start/").append(digits)},
            {"end_url", std::string("https://login.example/end/").append(digits)},
            {"cookie_name", std::string("cookie-").append(digits)},
            {"destination", json::parse(destinationText)}};
}

} // namespace

json::value with(json::value document, std::string_view place, json::value content) {
    const auto [parent, step] = find(document, place);
    if (parent->is_array()) {
        parent->as_array().at(std::stoul(step)) = std::move(content);
    } else {
        parent->as_object()[step] = std::move(content);
    }
    return document;
}

json::value without(json::value document, std::string_view place) {
    const auto [parent, step] = find(document, place);
    parent->as_object().erase(step);
    return document;
}

json::value initDocument() { return with(json::parse(activeText), "/state", "init"); }

json::value errorDocument(std::string_view substate) {
    return {{"version", "1"}, {"state", "error"}, {"substate", substate}};
}

json::value notEnrolledDocument() {
    return with(json::parse(activeText), "/enrollment_choices", json::array{json::parse(choiceText)});
}

json::value enrolledDocument() {
    return with(json::parse(activeText), "/enrollments", json::array{json::parse(enrollmentText)});
}

json::value dataplaneDocument(std::size_t alerts, std::size_t requests) {
    json::array alertList;
    for (std::size_t number = 1; number <= alerts; ++number) {
        alertList.push_back(alert(number));
    }
    json::array requestList;
    for (std::size_t number = 1; number <= requests; ++number) {
        requestList.push_back(request(number));
    }
    return {{"version", "1"}, {"dataplane_alerts", alertList}, {"dataplane_auth_requests", requestList}};
}

json::value progressDocument(std::string_view status, std::string_view substatus) {
    return {{"version", "1"},
            {"status", status},
            {"substatus", substatus},
            {"enrollment_id", "enrollment-1"},
            {"enrollment_context", ""}};
}

json::value loginDocument() {
    return {{"version", "1"},
            {"enrollment_id", "enrollment-1"},
            {"start_url", "https://login.example/start"},
            {"end_url", "https://login.example/end"},
            {"cookie_name", "enrollment-cookie"},
            {"enrollment_context", ""}};
}

} // namespace host::validate
