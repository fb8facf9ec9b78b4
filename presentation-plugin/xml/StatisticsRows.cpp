#include "presentation-plugin/xml/StatisticsRows.h"

#include "common/PluginIdentity.h"
#include "presentation-plugin/xml/StatisticsComposition.h"

#include <charconv>

namespace {

// How a field becomes text.

void appendTime(std::string& text, const StatSource& source, QuillTimePoint time) {
    text += formatStatTime(time, source.times);
}

void appendNumber(std::string& text, std::uint32_t number) {
    char digits[16];
    text.append(digits, std::to_chars(digits, digits + sizeof digits, number).ptr);
}

/// Enumerations are empty rather than "Unknown" where there is no enrollment to speak of.
template <class Enumeration>
void appendName(std::string& text, const StatSource& source, Enumeration value) {
    if (source.exists) {
        text += nameOf(value);
    }
}

std::string_view proxyConnectivity(const StatSource& source) {
    return source.exists ? nameOf(source.enrollment.dataplane_status.server_connectivity) : statUnknown;
}

template <auto Field>
void flowCount(const StatSource& source, std::string& text) {
    appendNumber(text, source.enrollment.dataplane_status.*Field);
}

template <auto Field>
void urn(const StatSource& source, std::string& text) {
    text += source.enrollment.certificate_status.certificate_urns.*Field;
}

// The rows, group by group.

constexpr std::array generalRows{
    StatRow{
        "stat_enrollment_time", "Enrollment Time:",
        [](const StatSource& s, std::string& text) { appendTime(text, s, s.enrollment.enrollment_time); }},
    StatRow{"stat_proxy_connectivity", "Proxy Connectivity Status:",
            [](const StatSource& s, std::string& text) { text += proxyConnectivity(s); }},
};

constexpr std::array configSyncRows{
    StatRow{"stat_server_connectivity", "Server Connectivity:",
            [](const StatSource& s, std::string& text) {
                appendName(text, s, s.enrollment.config_sync_status.server_connectivity);
            }},
    StatRow{"stat_sync_interval_min", "Sync Interval (minutes):",
            [](const StatSource& s, std::string& text) {
                appendNumber(text, s.enrollment.config_sync_status.config_sync_interval_min);
            }},
    StatRow{"stat_last_sync_success_time", "Last Successful Sync:",
            [](const StatSource& s, std::string& text) {
                appendTime(text, s, s.enrollment.config_sync_status.last_config_sync_success);
            }},
    StatRow{"stat_fail_cnt_since_last_sync_success", "Failed Attempts Since Last Sync:",
            [](const StatSource& s, std::string& text) {
                appendNumber(text, s.enrollment.config_sync_status.fail_cnt_since_last_sync_success);
            }},
};

constexpr std::array certificateRows{
    StatRow{"stat_certificate_state", "State:",
            [](const StatSource& s, std::string& text) {
                appendName(text, s, s.enrollment.certificate_status.certificate_state);
            }},
    StatRow{"stat_expiration_time", "Expiration Time:",
            [](const StatSource& s, std::string& text) {
                appendTime(text, s, s.enrollment.certificate_status.certificate_expiration_time);
            }},
    StatRow{"stat_certificate_renewal_status", "Renewal Status:",
            [](const StatSource& s, std::string& text) {
                appendName(text, s, s.enrollment.certificate_status.certificate_renewal_status);
            }},
    StatRow{"stat_last_renewal_attempt_time", "Last Renewal Attempt:",
            [](const StatSource& s, std::string& text) {
                appendTime(text, s, s.enrollment.certificate_status.last_renewal_attempt_time);
            }},
    StatRow{"stat_failed_renewal_attempt_cnt", "Failed Attempts to Renew Certificate:",
            [](const StatSource& s, std::string& text) {
                appendNumber(text, s.enrollment.certificate_status.failed_renewal_attempt_cnt);
            }},
    StatRow{"stat_org_id", "Organization ID:", urn<&CertificateUrns_t::org_id>},
    StatRow{"stat_user_id", "User ID:", urn<&CertificateUrns_t::user_id>},
    StatRow{"stat_plv_id", "Plover Desktop ID:", urn<&CertificateUrns_t::plv_id>},
    StatRow{"stat_quill_device_id", "Device ID:", urn<&CertificateUrns_t::quill_device_id>},
    StatRow{"stat_user_name", "Username:", urn<&CertificateUrns_t::user_name>},
};

constexpr std::array activeFlowRows{
    StatRow{"stat_active_flow_cnt_udp",
            "Active UDP Flows:", flowCount<&DataplaneStatus_t::active_flow_cnt_udp>},
    StatRow{"stat_active_flow_cnt_tcp",
            "Active TCP Flows:", flowCount<&DataplaneStatus_t::active_flow_cnt_tcp>},
};

constexpr std::array cumulativeFlowRows{
    StatRow{"stat_flow_cnt_udp", "UDP Flows:", flowCount<&DataplaneStatus_t::flow_cnt_udp>},
    StatRow{"stat_flow_cnt_tcp", "TCP Flows:", flowCount<&DataplaneStatus_t::flow_cnt_tcp>},
    StatRow{"stat_allowed_flow_cnt_udp",
            "Allowed UDP Flows:", flowCount<&DataplaneStatus_t::allowed_flow_cnt_udp>},
    StatRow{"stat_allowed_flow_cnt_tcp",
            "Allowed TCP Flows:", flowCount<&DataplaneStatus_t::allowed_flow_cnt_tcp>},
    StatRow{"stat_blocked_flow_cnt_udp",
            "Blocked UDP Flows:", flowCount<&DataplaneStatus_t::blocked_flow_cnt_udp>},
    StatRow{"stat_blocked_flow_cnt_tcp",
            "Blocked TCP Flows:", flowCount<&DataplaneStatus_t::blocked_flow_cnt_tcp>},
    StatRow{"stat_authenticated_flow_cnt_udp",
            "Authenticated UDP Flows:", flowCount<&DataplaneStatus_t::authenticated_flow_cnt_udp>},
    StatRow{"stat_authenticated_flow_cnt_tcp",
            "Authenticated TCP Flows:", flowCount<&DataplaneStatus_t::authenticated_flow_cnt_tcp>},
};

} // namespace

const std::array<StatGroup, 5> statDetailGroups{{
    {"stat_group_general_info", "General:", generalRows},
    {"stat_group_config_sync_info", "Config Sync", configSyncRows},
    {"stat_group_certificate_info", "Norvane Gatehouse Certificate", certificateRows},
    {"stat_group_active_flow_info", "Active Flow Counts:", activeFlowRows},
    {"stat_group_cumulative_info", "Cumulative Flow Counts:", cumulativeFlowRows},
}};

StatSource statSource(const StatusNotification_t& status, common2::LocalTimeCache& times) {
    static const Enrollment_t defaults;
    const bool exists = !status.enrollments.empty();
    return {exists ? status.enrollments.front() : defaults, exists, times};
}

std::string_view fingerprintStatusText(FingerprintStatus status) noexcept {
    const std::string_view name = nameOf(status);
    return name.empty() ? statUnknown : name;
}

StatOverviewValues statOverviewValues(const StatusNotification_t& status) {
    StatOverviewValues values;
    values.interceptor = nameOf(status.interceptor_connectivity);
    if (!status.enrollments.empty()) {
        const Enrollment_t& first = status.enrollments.front();
        values.certificate = nameOf(first.certificate_status.certificate_state);
        values.configSync = nameOf(first.config_sync_status.server_connectivity);
        values.proxy = nameOf(first.dataplane_status.server_connectivity);
    }
    return values;
}

namespace {

/// The C library's own follows the host's locale, which may take a byte of a character for a letter.
char withCapital(char letter) noexcept {
    return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
}

} // namespace

std::string statOverviewTitle(std::string_view state) {
    std::string title = pluginIdentity::label;
    if (!state.empty()) {
        title.append(" (").append(1, withCapital(state.front()));
        title.append(state.substr(1)).append(")");
    }
    return title;
}
