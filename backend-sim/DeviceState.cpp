#include "backend-sim/DeviceState.h"

#include <boost/json/serialize.hpp>
#include <boost/json/value.hpp>

namespace sim {
namespace {

namespace json = boost::json;

constexpr std::int64_t certificateLifetime = 90LL * 24 * 60 * 60;

json::object healthyStatus(std::string_view state) {
    return {
        {"version", "1"},
        {"state", state},
        {"interceptor_connectivity", "ok"},
        {"posture_connectivity", "ok"},
        {"hw_key_store_availability", "ok"},
        {"service_status", "ok"},
    };
}

json::array enrollmentChoices() {
    return {{{"state", "available"},
             {"id", enrollmentChoiceId},
             {"type", "user"},
             {"label", "Example Corp"},
             {"enroll_allowed", true}}};
}

json::object configSyncStatus(const DeviceState& device) {
    return {
        {"config_sync_interval_min", 60},
        {"last_config_sync_success", device.lastConfigSync},
        {"fail_cnt_since_last_sync_success", 0},
        {"server_connectivity", "ok"},
    };
}

json::object certificateStatus(const DeviceState& device) {
    return {
        {"certificate_expiration_time", device.enrollmentTime + certificateLifetime},
        {"last_renewal_attempt_time", 0},
        {"failed_renewal_attempt_cnt", 0},
        {"certificate_state", "ok"},
        {"certificate_renewal_status", "ok"},
        {"certificate_urns",
         {{"org_id", "org-1"},
          {"user_id", "user-1"},
          {"plv_id", "plv-1"},
          {"quill_device_id", "device-1"},
          {"user_name", "Robin Example"}}},
    };
}

json::object dataplaneStatus() {
    json::object status;
    for (const char* counter :
         {"flow_cnt_udp", "flow_cnt_tcp", "active_flow_cnt_udp", "active_flow_cnt_tcp",
          "allowed_flow_cnt_udp", "allowed_flow_cnt_tcp", "blocked_flow_cnt_udp", "blocked_flow_cnt_tcp",
          "authenticated_flow_cnt_udp", "authenticated_flow_cnt_tcp"}) {
        status.emplace(counter, 0);
    }
    status.emplace("server_connectivity", "ok");
    status.emplace("proxy_configs", json::array{{{"label", "Example proxy"}, {"status", "active"}}});
    return status;
}

json::array enrollments(const DeviceState& device) {
    return {
        {{"state", "enrolled"},
         {"substate", ""},
         {"id", device.enrollmentId},
         {"type", "user"},
         {"label", "Example Corp"},
         {"enrollment_time", device.enrollmentTime},
         {"unenroll_allowed", true},
         {"reenroll_allowed", true},
         {"config_sync_status", configSyncStatus(device)},
         {"certificate_status", certificateStatus(device)},
         {"dataplane_status", dataplaneStatus()},
         {"network_status", {{"fingerprints", json::array{{{"label", "Office"}, {"status", "Matched"}}}}}}}};
}

} // namespace

std::string initStatusDocument() {
    json::object status = healthyStatus("init");
    status.emplace("enrollment_choices", json::array{});
    status.emplace("enrollments", json::array{});
    return json::serialize(status);
}

std::string statusDocument(const DeviceState& device) {
    json::object status = healthyStatus("active");
    status.emplace("enrollment_choices", device.isEnrolled ? json::array{} : enrollmentChoices());
    status.emplace("enrollments", device.isEnrolled ? enrollments(device) : json::array{});
    return json::serialize(status);
}

std::string enrollmentStatusDocument(const EnrollmentProgress& progress, std::string_view status,
                                     std::string_view substatus) {
    return json::serialize(json::object{
        {"version", "1"},
        {"status", status},
        {"substatus", substatus},
        {"enrollment_id", progress.id},
        {"enrollment_context", progress.context},
    });
}

std::string enrollmentAuthRequestDocument(const EnrollmentProgress& progress) {
    return json::serialize(json::object{
        {"version", "1"},
        {"enrollment_id", progress.id},
        {"start_url", "https://login.example.test/start"},
        {"end_url", "https://login.example.test/done"},
        {"cookie_name", "session"},
        {"enrollment_context", progress.context},
    });
}

std::string dataplaneDocument() {
    return json::serialize(json::object{
        {"version", "1"},
        {"dataplane_alerts", json::array{}},
        {"dataplane_auth_requests", json::array{}},
    });
}

} // namespace sim
