#include "common/api/JsonFields.h"
#include "common/api/QuillApiDefsUtil.h"

namespace {

namespace json = boost::json;
using namespace json_fields;

// Everything is read in place: a record that is used again keeps the storage of its texts and lists. What is
// absent is therefore reset.

/// Reads a member that may be absent; the field is then empty.
template <class Field, class Convert>
void readIfPresent(const Members& object, std::string_view key, Field& field, Convert convert) {
    if (const json::value* value = object.find(key)) {
        field = convert(*value);
    } else {
        field = Field();
    }
}

/// The same for a nested record.
template <class Record>
void readRecordIfPresent(const Members& object, std::string_view key, Record& record,
                         void (*read)(const json::value&, Record&)) {
    if (const json::value* value = object.find(key)) {
        read(*value, record);
    } else {
        record = Record();
    }
}

void readConfigSyncStatus(const json::value& value, ConfigSyncStatus_t& status) {
    const Members object = toObject(value);
    status.config_sync_interval_min = toCounter(member(object, "config_sync_interval_min"));
    status.last_config_sync_success = toTimePoint(member(object, "last_config_sync_success"));
    status.fail_cnt_since_last_sync_success = toCounter(member(object, "fail_cnt_since_last_sync_success"));
    status.server_connectivity = toEnumeration<ServerConnectivity>(member(object, "server_connectivity"));
}

/// Both keys are looked up before either text is read: a missing one outdoes a text of the wrong kind.
void readProxyConfig(const json::value& value, ProxyConfig_t& config) {
    const Members object = toObject(value);
    const json::value* label = object.find("label");
    const json::value* status = object.find("status");
    if (!label || !status) {
        throwBadParameter();
    }
    config.label = viewOf(*label);
    config.status = viewOf(*status);
}

void readProxyConfigs(const json::value& value, std::vector<ProxyConfig_t>& configs) {
    const json::array* array = value.if_array();
    if (!array) {
        throwBadParameter();
    }
    readEach(*array, configs, readProxyConfig);
}

void readDataplaneStatus(const json::value& value, DataplaneStatus_t& status) {
    const Members object = toObject(value);
    const auto counter = [&object](std::string_view key) { return toCounter(member(object, key)); };
    status.flow_cnt_udp = counter("flow_cnt_udp");
    status.flow_cnt_tcp = counter("flow_cnt_tcp");
    status.active_flow_cnt_udp = counter("active_flow_cnt_udp");
    status.active_flow_cnt_tcp = counter("active_flow_cnt_tcp");
    status.allowed_flow_cnt_udp = counter("allowed_flow_cnt_udp");
    status.allowed_flow_cnt_tcp = counter("allowed_flow_cnt_tcp");
    status.blocked_flow_cnt_udp = counter("blocked_flow_cnt_udp");
    status.blocked_flow_cnt_tcp = counter("blocked_flow_cnt_tcp");
    status.authenticated_flow_cnt_udp = counter("authenticated_flow_cnt_udp");
    status.authenticated_flow_cnt_tcp = counter("authenticated_flow_cnt_tcp");
    status.server_connectivity = toEnumeration<ServerConnectivity>(member(object, "server_connectivity"));
    readProxyConfigs(member(object, "proxy_configs"), status.proxy_configs);
}

void readCertificateUrns(const json::value& value, CertificateUrns_t& urns) {
    const Members object = toObject(value);
    urns.org_id = viewOf(member(object, "org_id"));
    urns.user_id = viewOf(member(object, "user_id"));
    urns.plv_id = viewOf(member(object, "plv_id"));
    urns.quill_device_id = viewOf(member(object, "quill_device_id"));
    urns.user_name = viewOf(member(object, "user_name"));
}

void readCertificateStatus(const json::value& value, CertificateStatus_t& status) {
    const Members object = toObject(value);
    status.certificate_expiration_time = toTimePoint(member(object, "certificate_expiration_time"));
    status.last_renewal_attempt_time = toTimePoint(member(object, "last_renewal_attempt_time"));
    status.failed_renewal_attempt_cnt = toCounter(member(object, "failed_renewal_attempt_cnt"));
    status.certificate_state = toEnumeration<CertificateState>(member(object, "certificate_state"));
    status.certificate_renewal_status =
        toEnumeration<CertificateRenewalStatus>(member(object, "certificate_renewal_status"));
    readCertificateUrns(member(object, "certificate_urns"), status.certificate_urns);
}

/// The one enumeration whose literals are not forgiven.
void readFingerprint(const json::value& value, Fingerprint_t& fingerprint) {
    const Members object = toObject(value);
    fingerprint.label = viewOf(member(object, "label"));
    fingerprint.status = valueOfLiteral<FingerprintStatus>(viewOf(member(object, "status"))).value();
}

void readNetworkStatus(const json::value& value, NetworkStatus_t& status) {
    if (!readList(toObject(value), "fingerprints", status.fingerprints, readFingerprint)) {
        throwBadParameter();
    }
}

void readEnrollmentChoice(const json::value& value, EnrollmentChoice_t& choice) {
    const Members object = toObject(value);
    readIfPresent(object, "state", choice.state, viewBeforeNul);
    readIfPresent(object, "id", choice.id, viewBeforeNul);
    readIfPresent(object, "type", choice.type, viewBeforeNul);
    readIfPresent(object, "label", choice.label, viewBeforeNul);
    readIfPresent(object, "enroll_allowed", choice.enroll_allowed, toBool);
}

void readEnrollment(const json::value& value, Enrollment_t& enrollment) {
    const Members object = toObject(value);
    readIfPresent(object, "state", enrollment.state, viewBeforeNul);
    readIfPresent(object, "substate", enrollment.substate, viewBeforeNul);
    readIfPresent(object, "id", enrollment.id, viewBeforeNul);
    readIfPresent(object, "type", enrollment.type, viewBeforeNul);
    readIfPresent(object, "label", enrollment.label, viewBeforeNul);
    readIfPresent(object, "enrollment_time", enrollment.enrollment_time, toSignedTimePoint);
    readIfPresent(object, "unenroll_allowed", enrollment.unenroll_allowed, toBool);
    readIfPresent(object, "reenroll_allowed", enrollment.reenroll_allowed, toBool);
    // Not in the order of the fields: of several faults the first one read is the one that is told.
    readRecordIfPresent(object, "config_sync_status", enrollment.config_sync_status, readConfigSyncStatus);
    readRecordIfPresent(object, "dataplane_status", enrollment.dataplane_status, readDataplaneStatus);
    readRecordIfPresent(object, "certificate_status", enrollment.certificate_status, readCertificateStatus);
    readRecordIfPresent(object, "network_status", enrollment.network_status, readNetworkStatus);
}

bool readSubstate(const Members& object, std::string& substate) {
    substate.clear();
    return !object.find("substate") || readText(object, "substate", substate);
}

template <class Enumeration>
bool readConnectivity(const Members& object, std::string_view key, bool required, Enumeration& field) {
    const json::value* value = object.find(key);
    if (!value) {
        field = Enumeration::Unknown;
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
    const json::value* service = object.find("service_status");
    status.service_status = service ? toEnumeration<ServiceStatus>(*service) : ServiceStatus::Unknown;
    if (status.state == "error") { // what the lists hold then is not to be trusted
        status.enrollment_choices.clear();
        status.enrollments.clear();
        return true;
    }
    return readList(object, "enrollment_choices", status.enrollment_choices, readEnrollmentChoice) &&
           readList(object, "enrollments", status.enrollments, readEnrollment);
}

} // namespace

StatusNotification_t StatusNotificationFromJson(json::value value, std::error_code& error) {
    return decodeDocument<StatusNotification_t>(value, error, decodeStatus);
}

void readStatusNotification(const json::value& value, std::error_code& error, StatusNotification_t& status) {
    decodeInto(value, error, status, decodeStatus);
}
