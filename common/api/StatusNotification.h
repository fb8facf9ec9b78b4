/// The status notification: the module's whole state in one record, as the backend delivers it. Fields bear
/// the names of their JSON keys; texts are UTF-8. Equality compares all fields in order, lists element by
/// element in list order.
#pragma once

#include "common/api/QuillTimePoint.h"
#include "common/api/StatusEnumerations.h"

#include <cstdint>
#include <string>
#include <vector>

/// One way in which the device may enrol.
struct EnrollmentChoice_t {
    std::string state;
    std::string id;
    std::string type;
    std::string label;
    bool enroll_allowed = false;

    bool operator==(const EnrollmentChoice_t&) const = default;
};

/// How fetching the configuration from the organisation's server goes.
struct ConfigSyncStatus_t {
    std::uint32_t config_sync_interval_min = 0; ///< minutes
    QuillTimePoint last_config_sync_success = 0;
    std::uint32_t fail_cnt_since_last_sync_success = 0;
    ServerConnectivity server_connectivity{};

    bool operator==(const ConfigSyncStatus_t&) const = default;
};

/// Whom the enrollment's certificate names.
struct CertificateUrns_t {
    std::string org_id;
    std::string user_id;
    std::string plv_id;
    std::string quill_device_id;
    std::string user_name;

    bool operator==(const CertificateUrns_t&) const = default;
};

struct CertificateStatus_t {
    QuillTimePoint certificate_expiration_time = 0;
    QuillTimePoint last_renewal_attempt_time = 0;
    std::uint32_t failed_renewal_attempt_cnt = 0;
    CertificateState certificate_state{};
    CertificateRenewalStatus certificate_renewal_status{};
    CertificateUrns_t certificate_urns;

    bool operator==(const CertificateStatus_t&) const = default;
};

struct ProxyConfig_t {
    std::string label;
    std::string status;

    bool operator==(const ProxyConfig_t&) const = default;
};

/// How the flows of applications fare.
struct DataplaneStatus_t {
    std::uint32_t flow_cnt_udp = 0;
    std::uint32_t flow_cnt_tcp = 0;
    std::uint32_t active_flow_cnt_udp = 0;
    std::uint32_t active_flow_cnt_tcp = 0;
    std::uint32_t allowed_flow_cnt_udp = 0;
    std::uint32_t allowed_flow_cnt_tcp = 0;
    std::uint32_t blocked_flow_cnt_udp = 0;
    std::uint32_t blocked_flow_cnt_tcp = 0;
    std::uint32_t authenticated_flow_cnt_udp = 0;
    std::uint32_t authenticated_flow_cnt_tcp = 0;
    ServerConnectivity server_connectivity{};
    std::vector<ProxyConfig_t> proxy_configs;

    bool operator==(const DataplaneStatus_t&) const = default;
};

struct Fingerprint_t {
    std::string label;
    FingerprintStatus status{};

    bool operator==(const Fingerprint_t&) const = default;
};

struct NetworkStatus_t {
    std::vector<Fingerprint_t> fingerprints;

    bool operator==(const NetworkStatus_t&) const = default;
};

/// One existing enrollment.
struct Enrollment_t {
    std::string state;
    std::string substate;
    std::string id;
    std::string type;
    std::string label;
    QuillTimePoint enrollment_time = 0;
    bool unenroll_allowed = false;
    bool reenroll_allowed = false;
    ConfigSyncStatus_t config_sync_status;
    CertificateStatus_t certificate_status;
    DataplaneStatus_t dataplane_status;
    NetworkStatus_t network_status;

    bool operator==(const Enrollment_t&) const = default;
};

struct StatusNotification_t {
    std::string version;
    std::string state;
    std::string substate;
    InterceptorConnectivity interceptor_connectivity{};
    PostureConnectivity posture_connectivity{};
    HwKeyStoreAvailability hw_key_store_availability{};
    ServiceStatus service_status = ServiceStatus::Unknown;
    std::vector<EnrollmentChoice_t> enrollment_choices;
    std::vector<Enrollment_t> enrollments;

    bool operator==(const StatusNotification_t&) const = default;
};
