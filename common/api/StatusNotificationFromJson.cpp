#include "common/api/JsonFields.h"
#include "common/api/QuillApiDefsUtil.h"

namespace {

namespace json = boost::json;
using namespace json_fields;

/// Reads a member that may be absent; the field then keeps what it holds.
template <class Field, class Convert>
void readIfPresent(const Members& object, std::string_view key, Field& field, Convert convert) {
    if (const json::value* value = object.find(key)) {
        field = convert(*value);
    }
}

ConfigSyncStatus_t toConfigSyncStatus(const json::value& value) {
    const Members object = toObject(value);
    return {
        .config_sync_interval_min = toCounter(member(object, "config_sync_interval_min")),
        .last_config_sync_success = toTimePoint(member(object, "last_config_sync_success")),
        .fail_cnt_since_last_sync_success = toCounter(member(object, "fail_cnt_since_last_sync_success")),
        .server_connectivity = toEnumeration<ServerConnectivity>(member(object, "server_connectivity")),
    };
}

/// Both keys are looked up before either text is read: a missing one outdoes a text of the wrong kind.
ProxyConfig_t toProxyConfig(const json::value& value) {
    const Members object = toObject(value);
    const json::value* label = object.find("label");
    const json::value* status = object.find("status");
    if (!label || !status) {
        throwBadParameter();
    }
    return {.label = toText(*label), .status = toText(*status)};
}

std::vector<ProxyConfig_t> toProxyConfigs(const json::value& value) {
    const json::array* array = value.if_array();
    if (!array) {
        throwBadParameter();
    }
    return toList(*array, toProxyConfig);
}

DataplaneStatus_t toDataplaneStatus(const json::value& value) {
    const Members object = toObject(value);
    const auto counter = [&object](std::string_view key) { return toCounter(member(object, key)); };
    return {
        .flow_cnt_udp = counter("flow_cnt_udp"),
        .flow_cnt_tcp = counter("flow_cnt_tcp"),
        .active_flow_cnt_udp = counter("active_flow_cnt_udp"),
        .active_flow_cnt_tcp = counter("active_flow_cnt_tcp"),
        .allowed_flow_cnt_udp = counter("allowed_flow_cnt_udp"),
        .allowed_flow_cnt_tcp = counter("allowed_flow_cnt_tcp"),
        .blocked_flow_cnt_udp = counter("blocked_flow_cnt_udp"),
        .blocked_flow_cnt_tcp = counter("blocked_flow_cnt_tcp"),
        .authenticated_flow_cnt_udp = counter("authenticated_flow_cnt_udp"),
        .authenticated_flow_cnt_tcp = counter("authenticated_flow_cnt_tcp"),
        .server_connectivity = toEnumeration<ServerConnectivity>(member(object, "server_connectivity")),
        .proxy_configs = toProxyConfigs(member(object, "proxy_configs")),
    };
}

CertificateUrns_t toCertificateUrns(const json::value& value) {
    const Members object = toObject(value);
    return {
        .org_id = toText(member(object, "org_id")),
        .user_id = toText(member(object, "user_id")),
        .plv_id = toText(member(object, "plv_id")),
        .quill_device_id = toText(member(object, "quill_device_id")),
        .user_name = toText(member(object, "user_name")),
    };
}

CertificateStatus_t toCertificateStatus(const json::value& value) {
    const Members object = toObject(value);
    return {
        .certificate_expiration_time = toTimePoint(member(object, "certificate_expiration_time")),
        .last_renewal_attempt_time = toTimePoint(member(object, "last_renewal_attempt_time")),
        .failed_renewal_attempt_cnt = toCounter(member(object, "failed_renewal_attempt_cnt")),
        .certificate_state = toEnumeration<CertificateState>(member(object, "certificate_state")),
        .certificate_renewal_status =
            toEnumeration<CertificateRenewalStatus>(member(object, "certificate_renewal_status")),
        .certificate_urns = toCertificateUrns(member(object, "certificate_urns")),
    };
}

/// The one enumeration whose literals are not forgiven.
Fingerprint_t toFingerprint(const json::value& value) {
    const Members object = toObject(value);
    return {
        .label = toText(member(object, "label")),
        .status = valueOfLiteral<FingerprintStatus>(toText(member(object, "status"))).value(),
    };
}

NetworkStatus_t toNetworkStatus(const json::value& value) {
    NetworkStatus_t status;
    if (!readList(toObject(value), "fingerprints", status.fingerprints, toFingerprint)) {
        throwBadParameter();
    }
    return status;
}

EnrollmentChoice_t toEnrollmentChoice(const json::value& value) {
    const Members object = toObject(value);
    EnrollmentChoice_t choice;
    readIfPresent(object, "state", choice.state, toTextBeforeNul);
    readIfPresent(object, "id", choice.id, toTextBeforeNul);
    readIfPresent(object, "type", choice.type, toTextBeforeNul);
    readIfPresent(object, "label", choice.label, toTextBeforeNul);
    readIfPresent(object, "enroll_allowed", choice.enroll_allowed, toBool);
    return choice;
}

Enrollment_t toEnrollment(const json::value& value) {
    const Members object = toObject(value);
    Enrollment_t enrollment;
    readIfPresent(object, "state", enrollment.state, toTextBeforeNul);
    readIfPresent(object, "substate", enrollment.substate, toTextBeforeNul);
    readIfPresent(object, "id", enrollment.id, toTextBeforeNul);
    readIfPresent(object, "type", enrollment.type, toTextBeforeNul);
    readIfPresent(object, "label", enrollment.label, toTextBeforeNul);
    readIfPresent(object, "enrollment_time", enrollment.enrollment_time, toSignedTimePoint);
    readIfPresent(object, "unenroll_allowed", enrollment.unenroll_allowed, toBool);
    readIfPresent(object, "reenroll_allowed", enrollment.reenroll_allowed, toBool);
    // Not in the order of the fields: of several faults the first one read is the one that is told.
    readIfPresent(object, "config_sync_status", enrollment.config_sync_status, toConfigSyncStatus);
    readIfPresent(object, "dataplane_status", enrollment.dataplane_status, toDataplaneStatus);
    readIfPresent(object, "certificate_status", enrollment.certificate_status, toCertificateStatus);
    readIfPresent(object, "network_status", enrollment.network_status, toNetworkStatus);
    return enrollment;
}

bool readSubstate(const Members& object, std::string& substate) {
    return !object.find("substate") || readText(object, "substate", substate);
}

template <class Enumeration>
bool readConnectivity(const Members& object, std::string_view key, bool required, Enumeration& field) {
    const json::value* value = object.find(key);
    if (!value) {
        return !required;
    }
    field = toEnumeration<Enumeration>(*value);
    return true;
}

bool decodeStatus(const Members& object, StatusNotification_t& status) {
    if (!readText(object, "version", status.version) || !readText(object, "state", status.state) ||
        !readSubstate(object, status.substate)) {
        return false;
    }
    const bool active = status.state == "active";
    if (!readConnectivity(object, "interceptor_connectivity", active, status.interceptor_connectivity) ||
        !readConnectivity(object, "posture_connectivity", active, status.posture_connectivity) ||
        !readConnectivity(object, "hw_key_store_availability", active, status.hw_key_store_availability)) {
        return false;
    }
    readIfPresent(object, "service_status", status.service_status, toEnumeration<ServiceStatus>);
    if (status.state == "error") {
        return true; // what the lists hold then is not to be trusted
    }
    return readList(object, "enrollment_choices", status.enrollment_choices, toEnrollmentChoice) &&
           readList(object, "enrollments", status.enrollments, toEnrollment);
}

} // namespace

StatusNotification_t StatusNotificationFromJson(json::value value, std::error_code& error) {
    return decodeDocument<StatusNotification_t>(value, error, decodeStatus);
}
